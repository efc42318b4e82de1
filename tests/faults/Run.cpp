#include "tests/faults/Run.h"

#include <algorithm>
#include <csignal>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <set>
#include <stdexcept>

#include "app/EmergencyFile.h"
#include "base/ByteSource.h"
#include "exchange/KeptFile.h"
#include "registry/RegistryHive.h"
#include "tests/faults/Disk.h"
#include "tests/faults/Process.h"
#include "tests/faults/Program.h"

namespace fs = std::filesystem;

namespace {

constexpr int kAttempts = 3, kExports = 2;

fs::path ImportFile(const fs::path& data) { return data / "import.kvr"; }

// A folder made once, and what is kept in it.
struct Prepared {
    Folder folder;
    std::string present = "0";
};

void KeepStateAside(Program&) { (void)KeepState(); }

// Until SQLite will soon bring its log, 1000 pages of 4096 bytes, into the file.
void FillLog(Program& program, const fs::path& data) {
    constexpr std::uintmax_t kNearlyFull = 850 * 4096;
    constexpr int kSaves = 200;
    const fs::path log = data / "kivora/registry.sqlite-wal";
    for (int i = 0; fs::file_size(log) < kNearlyFull; ++i) {
        if (i == kSaves) throw std::runtime_error("the log does not grow");
        program.EditAll();
    }
}

void Damage(const fs::path& path) {
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    file.seekp(static_cast<std::streamoff>(bytes.rfind("Öl\r\nfür")));
    file.put('?');
}

void Make(const std::string& scenario, Prepared& prepared) {
    const fs::path data = prepared.folder.path / "data";
    fs::create_directories(data / "run");
    const std::vector<Note> notes = NotesOf({0, ImportedNotes()});
    std::ofstream(ImportFile(data), std::ios::binary) << KeptFileBytes(notes);
    if (scenario == "first") return;
    std::ofstream(Program::Exported(data), std::ios::binary) << Program::ExportedBytes(0);

    const Sheet sheet;
    InProcess(data, [&] {
        Ledger ledger(sheet);
        Program program(data, ledger);
        program.Start("0");
        for (int i = 0; i < 12; ++i) program.Add();
        program.Delete();
        program.Edit();
        if (scenario == "long") FillLog(program, data);
        if (scenario == kDamaged) KeepStateAside(program);
        if (scenario == "used" || scenario == kDamaged) Hive().Close();
    });
    if (scenario == kDamaged) Damage(data / "kivora/registry.sqlite");
    const Ledger::Content content = Ledger::Read(sheet.Text());
    prepared.present = content.tried.at(content.kept);
}

std::string Prepare(const std::string& scenario, const fs::path& data) {
    static std::map<std::string, std::unique_ptr<Prepared>> all;
    std::unique_ptr<Prepared>& prepared = all[scenario];
    if (!prepared) {
        prepared = std::make_unique<Prepared>();
        Make(scenario, *prepared);
    }
    fs::copy(prepared->folder.path / "data", data, fs::copy_options::recursive);
    return prepared->present;
}

std::vector<std::function<void(Program&)>> Steps(const std::string& scenario, const fs::path& data) {
    std::vector<std::function<void(Program&)>> steps;
    if (scenario == "long") {
        for (int i = 0; i < 10; ++i) steps.push_back(&Program::EditAll);
        return steps;
    }
    return {&Program::Add,    &Program::Edit,
            &Program::Delete, [data](Program& program) { program.Import(ImportFile(data)); },
            KeepStateAside,   &Program::Export,
            &Program::Edit,   &Program::Export,
            &Program::Add,    &Program::Delete,
            KeepStateAside};
}

void SaveUntilKept(Program& program, Ledger& ledger) {
    for (int i = 0; program.IsUnsaved() && i < kAttempts; ++i) program.Save();
    if (program.IsUnsaved()) ledger.Wrong("nothing can be saved although nothing fails any more");
}

// The program from start to end while a fault comes.
void Work(const std::string& scenario, const fs::path& data, const std::string& present, const Fault& fault,
          Ledger& ledger, const FileWatcher& watcher) {
    WatchFiles(data.string(), fault, watcher);
    Program program(data, ledger);
    bool started = program.Start(present);
    if (!started && fault.kind == Fault::FailForGood) EndFault();
    for (int i = 0; !started && i < kAttempts; ++i)
        started = ReadRegistryAgain().Kept() && program.Start(present);
    if (!started) return ledger.Wrong("it cannot be started although nothing fails any more");
    for (const auto& step : Steps(scenario, data)) {
        step(program);
        if (fault.kind == Fault::FailOnce) SaveUntilKept(program, ledger);
    }
    if (program.IsUnsaved()) EndFault();
    SaveUntilKept(program, ledger);
    Hive().Close();
    program.EndUnsaved();
    if (fault.kind != Fault::None && !FaultHasCome()) ledger.Wrong("the fault did not come");
    EndFault();
}

// Which notes are in the bin, each as it was thrown away.
std::set<std::string> Binned(const fs::path& data) {
    std::set<std::string> names;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(Program::Bin(data), none)) {
        ByteSource file = ByteSource::OfFile(entry.path());
        for (const Note& note : ExactNotes(file).value_or(std::vector<Note>()))
            if (note == NoteOf(NameOf(note))) names.insert(ToText(NameOf(note)));
    }
    return names;
}

// Which images lie in emergency files. Each has to find what was saved last when it was written.
std::set<std::string> Emergencies(const fs::path& data, const StoredImage& there, Ledger& ledger) {
    std::vector<const Note*> notes;
    for (const StoredNote& each : there.notes) notes.push_back(&each.note);
    const std::uint64_t digest = DigestOf(there.autostart, notes, there.entries, Digested::AsRead);
    std::set<std::string> images;
    for (const fs::path& path : EmergencyFiles(Program::Emergency(data))) {
        const auto unsaved = ReadEmergencyBytes(ByteSource::OfFile(path).ReadRest());
        StoredImage stored;
        if (!unsaved) continue;
        if (unsaved->stored && unsaved->stored != digest)
            ledger.Wrong("an emergency file takes what is there for something else than what was saved");
        for (const Note& note : unsaved->notes) stored.notes.emplace_back().note = note;
        stored.entries = unsaved->entries;
        Image image;
        std::string why;
        if (ToImage(stored, image, why)) images.insert(ToText(image));
    }
    return images;
}

// The file is that of the last export that succeeded, or of a later one.
bool IsExported(const fs::path& data, int last) {
    ByteSource file = ByteSource::OfFile(Program::Exported(data));
    if (file.Failure()) return last == 0;
    const std::string bytes = file.ReadRest();
    for (int number = last; number <= kExports; ++number)
        if (bytes == Program::ExportedBytes(number)) return true;
    return false;
}

// The next start, with nothing in its way.
void Check(const fs::path& data, const Ledger::Content& promised, Ledger& ledger) {
    const StoredImage stored = ReadStoredImage();
    const RegistryHealth health = HealthOfRegistry();
    if (!health.reading.Kept()) ledger.Wrong("next start: not readable: " + health.reading.detail);
    if (!health.writing.Kept()) ledger.Wrong("next start: not writable: " + health.writing.detail);
    ledger.Recovered(TakeRecoveryReport());
    Image image;
    std::string why;
    if (!ToImage(stored, image, why)) return ledger.Wrong("next start: " + why);
    const auto tried = promised.tried.find(image.number);
    if (tried == promised.tried.end() || tried->second != ToText(image))
        return ledger.Wrong("next start: what is there was never written: " + ToText(image));
    if (image.number < promised.kept)
        return ledger.Wrong("next start: lost are the saves from " + std::to_string(image.number) + " to " +
                            std::to_string(promised.kept));

    const std::set<std::string> binned = Binned(data);
    for (const std::string& name : promised.binned)
        if (!binned.contains(name)) ledger.Wrong("not in the bin: " + name);
    if (!IsExported(data, promised.exported)) ledger.Wrong("an exported file is not what was written");
    const std::set<std::string> emergencies = Emergencies(data, stored, ledger);
    for (const std::string& image : promised.forNextStart)
        if (!emergencies.contains(image)) ledger.Wrong("in no emergency file: " + image);

    Program program(data, ledger);
    program.Start(ToText(image));
    program.Add();
    if (program.IsUnsaved()) ledger.Wrong("next start: nothing can be saved");
    Hive().Close();
    program.Start(ToText(program.Present()));
    Hive().Close();
}

}  // namespace

std::vector<FileCall> CallsOf(const std::string& scenario) {
    const Folder folder;
    const fs::path data = folder.path / "data";
    const std::string present = Prepare(scenario, data);
    const Sheet calls, promised;
    const auto note = [&](const FileCall& call) { (void)!write(calls, &call, sizeof call); };
    const int status = InProcess(data, [&] {
        Ledger ledger(promised, scenario == kDamaged);
        Work(scenario, data, present, {}, ledger, {note});
    });
    if (status != 0) throw std::runtime_error(scenario + " fails without a fault");
    const std::string bytes = calls.Text();
    std::vector<FileCall> seen(bytes.size() / sizeof(FileCall));
    std::memcpy(seen.data(), bytes.data(), bytes.size());
    return seen;
}

std::vector<std::string> Run(const Row& row) {
    const Folder folder;
    const fs::path data = folder.path / "data";
    const std::string present = Prepare(row.scenario, data);
    Disk disk(data);
    const Sheet promised, found;
    const bool damaged = row.scenario == kDamaged;
    Ledger first(promised, damaged), second(found, damaged);
    first.Line("try", present);
    first.Line("kept", present);
    FileWatcher watcher;
    if (row.cut) {
        watcher.seen = [&](const FileCall& call) { disk.Apply(call); };
        watcher.dying = [&] { disk.PowerCut(*row.cut); };
    }
    const int status = InProcess(data, [&] { Work(row.scenario, data, present, row.fault, first, watcher); });

    std::vector<std::string> wrong;
    const bool dies = row.fault.kind != Fault::None && row.fault.kind < Fault::FailOnce;
    if (WIFSIGNALED(status) && !(dies && WTERMSIG(status) == SIGKILL))
        wrong.push_back("the program died of signal " + std::to_string(WTERMSIG(status)));
    const Ledger::Content promises = Ledger::Read(promised.Text());
    const int checked = InProcess(data, [&] { Check(data, promises, second); });
    if (checked != 0) wrong.push_back("the next start ended with " + std::to_string(checked));
    const Ledger::Content seen = Ledger::Read(found.Text());
    for (const auto* each : {&promises.wrong, &seen.wrong})
        wrong.insert(wrong.end(), each->begin(), each->end());
    return wrong;
}
