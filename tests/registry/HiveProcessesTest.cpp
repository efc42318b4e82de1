// The hive among several processes. What kills and full disks leave is tested in tests/faults.
#include <sys/wait.h>

#include <cstdlib>
#include <functional>

#include "registry/RegistryHealth.h"
#include "tests/registry/HiveFolder.h"

namespace {

// Runs the function in a process of its own; it returns true for success.
pid_t Start(const std::function<bool()>& function) {
    Hive().Close();  // an open database must not cross a fork
    const pid_t child = fork();
    if (child != 0) return child;
    const bool good = function();
    Hive().Close();
    _exit(good ? 0 : 1);
}

bool EndedWell(pid_t child) {
    int status = 0;
    return waitpid(child, &status, 0) == child && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

// Repeats what failed only because another process was at it.
bool KeptAtLast(const std::function<KeepResult()>& save) {
    KeepResult result = save();
    while (result.failure == KeepFailure::Locked) result = save();
    return result.Kept();
}

TEST(HiveProcesses, WritersWaitForEachOther) {
    constexpr int kProcesses = 3, kTurns = 60;
    const HiveFolder hive;
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process)
        children.push_back(Start([process] {
            for (int turn = 0; turn < kTurns; ++turn) {
                const auto turnIsKept = [&] {
                    RegistryTransaction both;
                    const int count = AsNumber(Registry().GetValue(kStore + L"Count", REG_TYPE_DWORD));
                    Registry().SetValue(kStore + L"Count", REG_TYPE_DWORD, count + 1);
                    Registry().SetValue(
                        kStore + L"P" + std::to_wstring(process) + L"T" + std::to_wstring(turn) + L"\\v",
                        REG_TYPE_DWORD, turn);
                    return both.Commit();
                };
                if (!KeptAtLast(turnIsKept)) return false;
            }
            return true;
        }));
    for (const pid_t child : children) EXPECT_TRUE(EndedWell(child));
    EXPECT_EQ(AsNumber(Registry().GetValue(kStore + L"Count", REG_TYPE_DWORD)), kProcesses * kTurns);
    std::vector<std::wstring> keys;
    EXPECT_EQ(Registry().EnumKeys(kStore, keys), kProcesses * kTurns);
}

TEST(HiveProcesses, ManyStartAtOnceOnADamagedFile) {
    constexpr int kProcesses = 8;
    const HiveFolder hive;
    std::filesystem::create_directories(hive.Folder());
    std::ofstream(hive.File(), std::ios::binary) << "keine Datenbank";
    int start[2];
    ASSERT_EQ(pipe(start), 0);
    std::vector<pid_t> children;
    for (int process = 0; process < kProcesses; ++process)
        children.push_back(Start([process, &start] {
            close(start[1]);
            char none;
            (void)!read(start[0], &none, 1);  // until all are there
            return KeptAtLast([process] {
                ReadRegistryAgain();
                RegistryTransaction one;
                Registry().SetValue(kStore + std::to_wstring(process), REG_TYPE_DWORD, 1);
                return one.Commit();
            });
        }));
    close(start[0]);
    close(start[1]);
    for (const pid_t child : children) EXPECT_TRUE(EndedWell(child));
    std::vector<std::wstring> names;
    Registry().EnumValues(kStore, names);
    EXPECT_EQ(names.size(), static_cast<std::size_t>(kProcesses));
    EXPECT_EQ(Defective(hive).size(), 1u);
}

// Closing a file takes a process all its locks on it, SQLite's too, and then the log goes to whoever looks.
TEST(HiveProcesses, AnotherProgramMayLookAtAnyTime) {
    const HiveFolder hive;
    SaveImage(10, 1);
    Hive().Close();
    EXPECT_EQ(MarkOfImage(10), 1) << "opened with all that lies beside it now";
    const std::string look = "sqlite3 '" + hive.File().string() + "' 'SELECT * FROM registry' >/dev/null";
    ASSERT_EQ(std::system(look.c_str()), 0);
    EXPECT_TRUE(SaveImage(10, 2).Kept());
    EXPECT_FALSE(TakeRecoveryReport());
}

}  // namespace
