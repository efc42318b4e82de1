#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

#include "tests/app/Process.h"

namespace {

std::string TemporaryFile() {
    std::string name = std::string(std::getenv("XDG_RUNTIME_DIR")) + "/output-XXXXXX";
    close(mkstemp(name.data()));
    return name;
}

std::string Content(const std::string& file) {
    std::ostringstream content;
    content << std::ifstream(file).rdbuf();
    return content.str();
}

}  // namespace

Process::Process(std::vector<std::string> arguments, bool display)
    : output_(TemporaryFile()), errors_(TemporaryFile()) {
    std::string program = KIVORA_PROGRAM;
    std::vector<char*> pointers = {program.data()};
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    pid_ = fork();
    if (pid_ != 0) return;
    dup2(open(output_.c_str(), O_WRONLY), STDOUT_FILENO);
    dup2(open(errors_.c_str(), O_WRONLY), STDERR_FILENO);
    if (!display) {
        unsetenv("DISPLAY");
        unsetenv("WAYLAND_DISPLAY");
    }
    execv(program.c_str(), pointers.data());
    _exit(127);
}

Process::~Process() {
    if (!Ended()) {
        Signal(SIGKILL);
        waitpid(pid_, &status_, 0);
    }
}

void Process::Signal(int signal) const { kill(pid_, signal); }

bool Process::Ended() {
    if (!ended_ && waitpid(pid_, &status_, WNOHANG) == pid_) ended_ = true;
    return ended_;
}

std::optional<int> Process::Wait(std::chrono::milliseconds limit) {
    if (!Eventually([this] { return Ended(); }, limit)) return std::nullopt;
    return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
}

std::string Process::Output() const { return Content(output_); }
std::string Process::Errors() const { return Content(errors_); }

std::string ShellOutput(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    char buffer[4096];
    for (std::size_t count; (count = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, count);
    pclose(pipe);
    while (output.ends_with('\n')) output.pop_back();
    return output;
}

bool Eventually(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return true;
}

std::vector<std::string> Windows() {
    std::istringstream ids(ShellOutput("xdotool search --onlyvisible --class '^kivora$' 2>/dev/null"));
    std::vector<std::string> windows;
    for (std::string id; ids >> id;) windows.push_back(id);
    return windows;
}

bool IsSplash(const std::string& id) {
    const std::string type = ShellOutput("xprop -id " + id + " _NET_WM_WINDOW_TYPE 2>/dev/null");
    return type.empty() || type.find("_SPLASH") != std::string::npos;
}

std::string WaitForWindow(const std::string& title, std::chrono::milliseconds limit) {
    std::string id;
    Eventually(
        [&] {
            id = ShellOutput("xdotool search --onlyvisible --name '^" + title + "$' 2>/dev/null");
            return !id.empty();
        },
        limit);
    return id;
}
