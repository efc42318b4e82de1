#include "bench/Process.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

std::string Proc(pid_t pid, const char* file) { return "/proc/" + std::to_string(pid) + "/" + file; }

double ValueIn(const std::string& file, const std::string& name) {
    std::ifstream lines(file);
    for (std::string word; lines >> word;) {
        double value = 0;
        if (word == name && lines >> value) return value;
    }
    return 0;
}

pid_t Start(const std::vector<std::string>& command) {
    const pid_t pid = fork();
    if (pid != 0) return pid;
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, STDOUT_FILENO);
    dup2(nowhere, STDERR_FILENO);
    std::vector<char*> arguments;
    for (const std::string& each : command) arguments.push_back(const_cast<char*>(each.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

pid_t Start(const std::function<int()>& work) {
    const pid_t pid = fork();
    if (pid == 0) _exit(work());
    return pid;
}

}  // namespace

Process::Process(const std::vector<std::string>& command) : pid_(Start(command)) {}
Process::Process(const std::function<int()>& work) : pid_(Start(work)) {}

Process::~Process() {
    if (Runs()) kill(pid_, SIGTERM);
    Wait();
}

bool Process::Runs() {
    if (!ended_) ended_ = waitpid(pid_, &status_, WNOHANG) == pid_;
    return !ended_;
}

int Process::Wait() {
    if (!ended_) waitpid(pid_, &status_, 0);
    ended_ = true;
    return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
}

double Process::Pss() const { return ValueIn(Proc(pid_, "smaps_rollup"), "Pss:") / 1024; }

unsigned long Process::ContextSwitches() const {
    double count = 0;
    for (const auto& thread : std::filesystem::directory_iterator(Proc(pid_, "task"))) {
        const std::string status = thread.path() / "status";
        count += ValueIn(status, "voluntary_ctxt_switches:") + ValueIn(status, "nonvoluntary_ctxt_switches:");
    }
    return static_cast<unsigned long>(count);
}

void Do(const std::vector<std::string>& command) {
    if (Process(command).Wait() != 0) throw std::runtime_error(command[0] + " fails");
}

double CpuOf(pid_t pid) {
    clockid_t clock;
    timespec time{};
    if (clock_getcpuclockid(pid, &clock) != 0 || clock_gettime(clock, &time) != 0)
        throw std::runtime_error("a measured program has gone");
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}
