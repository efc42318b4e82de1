#include "tests/faults/Scenarios.h"

#include <fstream>
#include <iterator>
#include <map>
#include <memory>

#include "exchange/KeptFile.h"
#include "tests/faults/Process.h"

namespace fs = std::filesystem;

namespace {

fs::path ImportFile(const fs::path& data) { return data / "import.kvr"; }

// A folder made once, and what is kept in it.
struct Prepared {
    Folder folder;
    Image present;
};

void MakeUsed(Program& program, int notes) {
    program.Start({});
    for (int i = 0; i < notes; ++i) program.Add();
    program.Delete();
    program.Edit();
}

// Until SQLite will soon bring its log, 1000 pages of 4096 bytes, into the file.
void FillLog(Program& program, const fs::path& data) {
    constexpr std::uintmax_t kNearlyFull = 850 * 4096;
    std::error_code none;
    while (fs::file_size(data / "kivora/registry.sqlite-wal", none) < kNearlyFull && !none) program.EditAll();
}

void Damage(const fs::path& path) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    file.seekp(static_cast<std::streamoff>(bytes.rfind("Öl\r\nfür")));
    file.put('?');
}

void Make(const std::string& scenario, Prepared& prepared) {
    const fs::path data = prepared.folder / "data";
    fs::create_directories(data / "run");
    const std::vector<Note> notes = NotesOf({0, ImportedNotes()});
    std::ofstream(ImportFile(data), std::ios::binary) << KeptFileBytes(notes);
    if (scenario == "first") return;
    std::ofstream(Program::Exported(data), std::ios::binary) << Program::ExportedBytes(0);

    const Sheet sheet;
    InProcess(data, [&] {
        Ledger ledger(sheet);
        Program program(data, ledger);
        MakeUsed(program, 12);
        if (scenario == "long") FillLog(program, data);
        if (scenario == kDamaged) program.KeepStateAside();
        if (scenario == "used" || scenario == kDamaged) program.Quit();
    });
    if (scenario == kDamaged) Damage(data / "kivora/registry.sqlite");
    const Ledger::Content content = Ledger::Read(sheet);
    prepared.present = content.tried.at(content.kept);
}

}  // namespace

const std::vector<std::string>& Scenarios() {
    static const std::vector<std::string> names = {"first", "used", "crashed", "long", kDamaged};
    return names;
}

Image Prepare(const std::string& scenario, const fs::path& data) {
    static std::map<std::string, std::unique_ptr<Prepared>> all;
    std::unique_ptr<Prepared>& prepared = all[scenario];
    if (!prepared) {
        prepared = std::make_unique<Prepared>();
        Make(scenario, *prepared);
    }
    fs::copy(prepared->folder / "data", data, fs::copy_options::recursive);
    return prepared->present;
}

std::vector<std::function<void(Program&)>> Steps(const std::string& scenario, const fs::path& data) {
    std::vector<std::function<void(Program&)>> steps;
    if (scenario == "long") {
        for (int i = 0; i < 10; ++i) steps.push_back(&Program::EditAll);
        return steps;
    }
    return {&Program::Add,
            &Program::Edit,
            &Program::Delete,
            [data](Program& program) { program.Import(ImportFile(data)); },
            &Program::KeepStateAside,
            &Program::Export,
            &Program::Edit,
            &Program::Export,
            &Program::Add,
            &Program::Delete,
            &Program::KeepStateAside};
}
