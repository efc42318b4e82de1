// The soak: the built program between many computers, half of them hostile, while its user works. tests/soak
// runs it, in a network of its own:
//   kivora_soak PROGRAM SECONDS CONNECTIONS
// Prints what was measured, and fails on what must not be: growth of memory, descriptors that stay open, a
// menu that comes late, a note that was answered with OK and is not there exactly once.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>

#include "tests/net/RawPeer.h"
#include "tests/net/SoakPeers.h"
#include "tests/net/SoakUser.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr std::uint16_t kPort = 5998;
constexpr double kNotesASecond = 0.8;
constexpr std::chrono::milliseconds kBetweenMenus = 2s;

constexpr double kMostGrowth = 20.0;  // MB
constexpr std::chrono::milliseconds kSlowestMenu = 100ms;

// The user's note, in front of all others: where it lies, in pixels.
constexpr int kPlace = 40, kSize = 240;
const std::string kOwnText = "Eigene Notiz";

class Program {
  public:
    Program(const std::string& program, const std::string& argument = "") : pid_(fork()) {
        if (pid_ != 0) return;
        execl(program.c_str(), program.c_str(), argument.empty() ? nullptr : argument.c_str(), nullptr);
        _exit(127);
    }
    ~Program() {
        if (Ended()) return;
        kill(pid_, SIGTERM);
        Wait();
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    bool Ended() {
        if (!ended_) ended_ = waitpid(pid_, nullptr, WNOHANG) == pid_;
        return ended_;
    }
    void Wait() {
        if (!ended_) waitpid(pid_, nullptr, 0);
        ended_ = true;
    }

    // Its resident memory in MB. What it shares with other programs is in it as a whole, so that it does not
    // depend on which of them run.
    double Memory() const {
        std::ifstream file(Proc("status"));
        for (std::string word; file >> word;) {
            double kilobytes = 0;
            if (word == "VmRSS:" && file >> kilobytes) return kilobytes / 1024;
        }
        return 0;
    }
    long Descriptors() const {
        std::error_code failed;
        const std::filesystem::directory_iterator open(Proc("fd"), failed);
        return failed ? 0 : std::distance(open, std::filesystem::directory_iterator());
    }

  private:
    std::string Proc(const char* file) const { return "/proc/" + std::to_string(pid_) + "/" + file; }

    const pid_t pid_;
    bool ended_ = false;
};

bool Eventually(const std::function<bool()>& condition, std::chrono::seconds limit) {
    for (const auto end = Clock::now() + limit; Clock::now() < end; std::this_thread::sleep_for(100ms)) {
        if (condition()) return true;
    }
    return condition();
}

bool Listens() {
    try {
        return RawConnection::To(kPort).Line().starts_with("OK ");
    } catch (const std::exception&) {
        return false;
    }
}

// How often each text is saved.
std::map<std::string, int> Saved() {
    std::map<std::string, int> texts;
    FILE* const rows = popen(
        "sqlite3 \"$XDG_DATA_HOME/kivora/registry.sqlite\" \"SELECT data FROM registry WHERE "
        "name = 'Text'\"",
        "r");
    char line[1000];
    while (std::fgets(line, sizeof line, rows)) ++texts[std::string(line, std::string_view(line).find('\n'))];
    pclose(rows);
    return texts;
}

// Hands the running program a file with the user's note.
void AddOwnNote(const std::string& program) {
    const std::string file = std::string(std::getenv("XDG_RUNTIME_DIR")) + "/eigene.kvr";
    {
        std::ofstream record(file, std::ios::binary);
        const auto number = [&](int value, int bytes) {
            for (; bytes > 0; --bytes, value >>= 8) record.put(static_cast<char>(value));
        };
        const auto text = [&](const std::string& value) {
            number(static_cast<int>(value.size()), 2);
            record << value;
        };
        text(kOwnText);
        text("");
        for (const int pixels : {kPlace, kPlace, kSize, kSize}) number(15 * pixels, 4);
        for (const int value : {65535, 0, 12}) number(value, 4);
        for (const int flag : {0, 0, 0, 0xFFFF}) number(flag, 2);
    }
    Program(program, file).Wait();
}

double Milliseconds(std::chrono::microseconds time) { return static_cast<double>(time.count()) / 1000; }

class Report {
  public:
    void Require(bool holds, const std::string& what) {
        if (!holds) breaches_.push_back(what);
    }
    // Prints the number, the median and the greatest of the times, and gives that.
    static double Times(const char* what, std::vector<std::chrono::microseconds> times) {
        if (times.empty()) return 0;
        std::sort(times.begin(), times.end());
        std::printf("%s: %zu, median %.1f ms, slowest %.1f ms\n", what, times.size(),
                    Milliseconds(times[times.size() / 2]), Milliseconds(times.back()));
        return Milliseconds(times.back());
    }
    int Result() const {
        for (const std::string& breach : breaches_) std::printf("BREACH: %s\n", breach.c_str());
        std::puts(breaches_.empty() ? "All as it should be." : "Not all as it should be.");
        return breaches_.empty() ? 0 : 1;
    }

  private:
    std::vector<std::string> breaches_;
};

void CheckNotes(const SoakPeers& peers, Report& report) {
    Report::Times("notes sent as they should be", peers.times);
    for (const std::string& failure : peers.failures) report.Require(false, "not acknowledged: " + failure);
    std::map<std::string, int> saved = Saved();
    std::size_t once = 0;
    for (const std::string& text : peers.acknowledged) {
        report.Require(saved[text] == 1, text + " is there " + std::to_string(saved[text]) + " times");
        once += saved[text] == 1;
        saved.erase(text);
    }
    std::printf("acknowledged: %zu, of those in the hive exactly once: %zu\n", peers.acknowledged.size(),
                once);
    report.Require(!peers.acknowledged.empty(), "no note was acknowledged");
    report.Require(saved[kOwnText] == 1, "the user's note has gone");
    saved.erase(kOwnText);
    for (const auto& [text, count] : saved) report.Require(count == 0, "nobody sent: " + text);
}

int Soak(const std::string& name, std::chrono::seconds time, unsigned connections) {
    Report report;
    Program program(name);
    if (!Eventually(Listens, 20s)) {
        std::puts("the program does not listen");
        return 2;
    }
    AddOwnNote(name);
    if (!Eventually([] { return Saved()[kOwnText] == 1; }, 20s)) {
        std::puts("the program does not take the user's note");
        return 2;
    }
    SoakUser user(kPlace + kSize / 2, kPlace + kSize / 2, kBetweenMenus);
    std::this_thread::sleep_for(2 * kBetweenMenus + 1s);
    const double memory = program.Memory();
    const long descriptors = program.Descriptors();
    double mostMemory = memory;
    long mostDescriptors = descriptors;

    user.Measure();
    SoakPeers peers(kPort, connections, kNotesASecond);
    for (const auto end = Clock::now() + time; Clock::now() < end && !program.Ended();) {
        std::this_thread::sleep_for(1s);
        mostMemory = std::max(mostMemory, program.Memory());
        mostDescriptors = std::max(mostDescriptors, program.Descriptors());
    }
    peers.Stop();
    user.Stop();
    report.Require(!program.Ended(), "the program has ended");
    const bool closed = Eventually([&] { return program.Descriptors() <= descriptors; }, 30s);
    std::this_thread::sleep_for(3s);
    const double memoryAfter = program.Memory();

    std::printf("%lld s, %u connections, half of them hostile\n", static_cast<long long>(time.count()),
                connections);
    for (const auto& [kind, count] : peers.attacks)
        std::printf("  %s: %lu connections made\n", kind.c_str(), count);
    CheckNotes(peers, report);
    const double slowest = Report::Times("menu opened", user.times);
    report.Require(!user.times.empty() && slowest <= Milliseconds(kSlowestMenu), "a menu came late");
    std::printf("memory: %.1f MB at first, %.1f MB at most (%+.1f), %.1f MB at last (%+.1f)\n", memory,
                mostMemory, mostMemory - memory, memoryAfter, memoryAfter - memory);
    report.Require(mostMemory - memory < kMostGrowth, "memory grew too much");
    std::printf("descriptors: %ld at first, %ld at most, %ld at last\n", descriptors, mostDescriptors,
                program.Descriptors());
    report.Require(closed, "descriptors stay open");
    return report.Result();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::puts("kivora_soak PROGRAM SECONDS CONNECTIONS");
        return 2;
    }
    return Soak(argv[1], std::chrono::seconds(std::atoi(argv[2])), static_cast<unsigned>(std::atoi(argv[3])));
}
