// Starts on a damaged hive: the file that was found is kept, and what is saved afterwards stays.
#include <algorithm>

#include "fuzz/registry/DamagedHive.h"
#include "registry/RegistryHealth.h"
#include "registry/RegistryHive.h"
#include "registry/clsRegistry.h"

namespace {

namespace fs = std::filesystem;

const std::wstring kValue = L"HKLM\\Software\\Kivora\\1.5\\Note0\\Text";

void Start(FuzzInput& input) {
    static const std::string whole = [] {
        const fs::path folder = EmptyHiveFolder();
        SaveSomeNotes();
        return BytesOfFile(folder / "registry.sqlite");
    }();
    const fs::path folder = EmptyHiveFolder(), file = folder / "registry.sqlite";
    const std::string bytes = Damaged(whole, input);
    WriteFile(file, bytes);

    const RegistryHealth health = HealthOfRegistry();
    // A byte of its header makes it the file of a later version, which is shown and left alone.
    if (health.writing.failure == KeepFailure::TooNew) {
        Require(health.reading.Kept() && BytesOfFile(file) == bytes, "a later version's file is not changed");
        return;
    }
    Require(health.reading.Kept() && health.writing.Kept(), "the program starts on any file");
    const std::optional<RecoveryReport> report = TakeRecoveryReport();
    Require(bytes != whole || !report, "nothing is said of a whole file");
    if (report && report->event == RecoveryReport::Damaged)
        Require(BytesOfFile(fs::path(report->setAside)) == bytes, "what was found lies aside as it was");

    std::vector<std::wstring> before, after;
    Registry().EnumKeys(L"HKLM\\Software\\Kivora\\1.5", before);
    {
        RegistryTransaction save;
        Registry().SetValue(kValue, REG_TYPE_SZ, L"neu");
        Require(save.Commit().Kept(), "what comes next is kept");
    }
    Hive().Close();
    Require(AsText(Registry().GetValue(kValue, REG_TYPE_SZ)) == L"neu", "it is there at the next start");
    Require(!TakeRecoveryReport(), "which finds all well");
    Registry().EnumKeys(L"HKLM\\Software\\Kivora\\1.5", after);
    for (const std::wstring& key : before)
        Require(key.empty() || std::ranges::find(after, key) != after.end(),
                "with all that was brought back");
}

const FuzzTarget kTarget("Hive", Start);

}  // namespace
