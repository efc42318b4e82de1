// Damaged hives, read without SQLite and brought back as far as they can be.
#include "fuzz/registry/DamagedHive.h"
#include "registry/HivePages.h"
#include "registry/HiveRecovery.h"

namespace {

void Read(FuzzInput& input) {
    static const std::string whole = [] {
        const std::filesystem::path folder = EmptyHiveFolder();
        SaveSomeNotes();
        return BytesOfFile(folder / "registry.sqlite");
    }();
    static const std::filesystem::path file = std::filesystem::path(std::getenv("XDG_RUNTIME_DIR")) / "pages";
    // Sometimes nothing of it is a hive.
    const bool invented = input.Byte() == 'i';
    const std::string bytes = invented ? std::string(input.Rest()) : Damaged(whole, input);
    WriteFile(file, bytes);

    const FoundRows found = ReadPages(file);
    Require(found.readable, "what the disk gives is read");
    std::size_t held = 0;
    for (const auto& [key, values] : found.values)
        for (const auto& [name, value] : values) held += value.data.size();
    Require(held <= 64 * bytes.size() + 4096, "no more is found than a file can hold");

    const Recovery recovery = Recover(found, nullptr);
    Require(recovery.image != nullptr, "there is always something to go on with");
    Require(recovery.report.fromState.empty(), "nothing comes from a state that is not there");
    if (bytes == whole) {
        Require(found.whole && recovery.report.lost == 0 && recovery.report.doubtful.empty(),
                "nothing is the matter with a whole file");
        Require(recovery.report.fromFile.size() >= kSavedNotes, "all of its notes are found");
    }
}

const FuzzTarget kTarget("HivePages", Read);

}  // namespace
