#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <set>
#include <stdexcept>

#include "app/EmergencyFile.h"
#include "base/ByteSource.h"
#include "exchange/KeptFile.h"
#include "registry/RegistryHive.h"
#include "tests/faults/Process.h"
#include "tests/faults/Program.h"
#include "tests/faults/Rows.h"
#include "tests/faults/Scenarios.h"

namespace fs = std::filesystem;

namespace {

constexpr int kAttempts = 3, kExports = 2;

void SaveUntilKept(Program& program, Ledger& ledger) {
    for (int i = 0; program.IsUnsaved() && i < kAttempts; ++i) program.Save();
    if (program.IsUnsaved()) ledger.Wrong("nothing can be saved although nothing fails any more");
}

// The program from start to end while a fault comes.
void Work(const std::string& scenario, const fs::path& data, const Image& present, const Fault& fault,
          Ledger& ledger, int log) {
    WatchFiles(data.string(), fault, log);
    Program program(data, ledger);
    bool started = program.Start(present);
    if (!started && fault.kind == Fault::FailForGood) EndFault();
    for (int i = 0; !started && i < kAttempts; ++i) started = program.TryStartAgain(present);
    if (!started) return ledger.Wrong("it cannot be started although nothing fails any more");
    for (const auto& step : Steps(scenario, data)) {
        step(program);
        if (fault.kind == Fault::FailOnce) SaveUntilKept(program, ledger);
    }
    if (program.IsUnsaved()) EndFault();
    SaveUntilKept(program, ledger);
    program.Quit();
    program.EndUnsaved();
    if (fault.kind != Fault::None && !FaultHasCome()) ledger.Wrong("the fault did not come");
    EndFault();
}

// Which notes are in the bin, each as it was thrown away.
std::set<NoteName> Binned(const fs::path& data) {
    std::set<NoteName> names;
    std::error_code none;
    for (const auto& entry : fs::directory_iterator(Program::Bin(data), none)) {
        ByteSource file = ByteSource::OfFile(entry.path());
        for (const Note& note : ExactNotes(file).value_or(std::vector<Note>()))
            if (note == NoteOf(NameOf(note))) names.insert(NameOf(note));
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
    if (tried == promised.tried.end() || tried->second != image)
        return ledger.Wrong("next start: what is there was never written: " + ToText(image));
    if (image.number < promised.kept)
        return ledger.Wrong("next start: lost are the saves from " + std::to_string(image.number) + " to " +
                            std::to_string(promised.kept));
    ledger.Kept(image.number);
    const std::set<NoteName> binned = Binned(data);
    for (const NoteName name : promised.binned)
        if (!binned.contains(name)) ledger.Wrong("not in the bin: " + ToText(name));
    if (!IsExported(data, promised.exported)) ledger.Wrong("an exported file is not what was written");
    const std::set<std::string> emergencies = Emergencies(data, stored, ledger);
    for (const Image& each : promised.forNextStart)
        if (!emergencies.contains(ToText(each))) ledger.Wrong("in no emergency file: " + ToText(each));

    Program program(data, ledger);
    program.Start(image);
    program.Add();
    if (program.IsUnsaved()) ledger.Wrong("next start: nothing can be saved");
    program.Quit();
    program.Start(program.Present());
    program.Quit();
}

void ReplayLog(int log, Disk& disk) {
    lseek(log, 0, SEEK_SET);
    for (LoggedCall call; ReadLog(log, call);) disk.Apply(call);
}

}  // namespace

std::vector<LoggedCall> CallsOf(const std::string& scenario) {
    const Folder folder;
    const fs::path data = folder / "data";
    const Image present = Prepare(scenario, data);
    const Sheet log, promised;
    const int status = InProcess(data, [&] {
        Ledger ledger(promised, scenario == kDamaged);
        Work(scenario, data, present, {}, ledger, log);
    });
    if (status != 0) throw std::runtime_error(scenario + " fails without a fault");
    std::vector<LoggedCall> calls;
    lseek(log, 0, SEEK_SET);
    for (LoggedCall call; ReadLog(log, call);) calls.push_back(call);
    return calls;
}

Outcome Run(const Row& row) {
    const Folder folder;
    const fs::path data = folder / "data";
    const Image present = Prepare(row.scenario, data);
    Disk disk(data);
    const Sheet log, promised, found;
    const bool damaged = row.scenario == kDamaged;
    Ledger first(promised, damaged), second(found, damaged);
    first.Trying(present);
    first.Kept(present.number);
    const int status = InProcess(
        data, [&] { Work(row.scenario, data, present, row.fault, first, row.cutsPower ? int(log) : -1); });

    Outcome outcome;
    const bool dies = row.fault.kind != Fault::None && row.fault.kind < Fault::FailOnce;
    if (WIFSIGNALED(status) && !(dies && WTERMSIG(status) == SIGKILL))
        outcome.wrong.push_back("the program died of signal " + std::to_string(WTERMSIG(status)));
    if (row.cutsPower) {
        ReplayLog(log, disk);
        fs::remove_all(data);
        disk.PowerCut(data, row.rest, row.seed);
    }
    const Ledger::Content promises = Ledger::Read(promised);
    const int checked = InProcess(data, [&] { Check(data, promises, second); });
    if (checked != 0) outcome.wrong.push_back("the next start ended with " + std::to_string(checked));
    const Ledger::Content seen = Ledger::Read(found);
    for (const auto* wrong : {&promises.wrong, &seen.wrong})
        outcome.wrong.insert(outcome.wrong.end(), wrong->begin(), wrong->end());
    outcome.saved = static_cast<int>(promises.tried.size() - promises.refused.size());
    outcome.refusedButThere = std::count(promises.refused.begin(), promises.refused.end(), seen.first) > 0;
    outcome.refused = static_cast<int>(promises.refused.size());
    return outcome;
}
