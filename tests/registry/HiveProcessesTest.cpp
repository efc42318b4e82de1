// The hive among several processes, killed ones among them, and on a full disk.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <random>
#include <thread>

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

TEST(HiveProcesses, AKilledSaveLeavesTheOldImageOrTheNewOne) {
    constexpr int kRounds = 40, kNotes = 120;
    using Clock = std::chrono::steady_clock;
    const HiveFolder hive;
    const Clock::time_point start = Clock::now();
    SaveImage(kNotes, 0);
    // The kills come at any moment of the next few saves, however long one takes here.
    const auto few = std::chrono::duration_cast<std::chrono::microseconds>(4 * (Clock::now() - start));
    std::mt19937 random(1);
    int last = 0, moved = 0;
    for (int round = 0; round < kRounds; ++round) {
        int ready[2];
        ASSERT_EQ(pipe(ready), 0);
        const pid_t child = Start([&]() -> bool {
            for (int mark = last + 1;; ++mark) {
                SaveImage(kNotes, mark);
                if (mark == last + 1) (void)!write(ready[1], "", 1);
            }
        });
        close(ready[1]);
        char byte;
        ASSERT_EQ(read(ready[0], &byte, 1), 1);
        close(ready[0]);
        std::this_thread::sleep_for(std::chrono::microseconds(random() % static_cast<unsigned>(few.count())));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const int mark = MarkOfImage(kNotes);
        ASSERT_GT(mark, last) << "round " << round << ": what was saved before is there";
        if (mark > last + 1) ++moved;
        ASSERT_FALSE(TakeRecoveryReport()) << "a kill damages nothing";
        last = mark;
    }
    EXPECT_GT(moved, 0) << "the kills came too early to hit a later save";
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
    int aside = 0;
    for (const auto& entry : std::filesystem::directory_iterator(hive.Folder()))
        if (entry.path().filename().string().find("defekt") != std::string::npos) ++aside;
    EXPECT_EQ(aside, 1);
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

// A limit on the size of files stands for a disk that is full.
TEST(HiveProcesses, AFullDiskKeepsTheOldImage) {
    const HiveFolder hive;
    SaveImage(10, 1);
    const pid_t child = Start([] {
        signal(SIGXFSZ, SIG_IGN);
        bool good = MarkOfImage(10) == 1;
        const rlimit full{60'000, RLIM_INFINITY}, space{RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &full);
        good = good && SaveImage(2000, 2).failure == KeepFailure::DiskFull;
        good = good && MarkOfImage(10) == 1;
        SaveImage(2000, 3);
        good = good && MarkOfImage(10) == 1;
        setrlimit(RLIMIT_FSIZE, &space);
        return good && SaveImage(20, 4).Kept() && MarkOfImage(20) == 4;
    });
    EXPECT_TRUE(EndedWell(child));
    EXPECT_EQ(MarkOfImage(20), 4) << "and works again when there is room";
}

}  // namespace
