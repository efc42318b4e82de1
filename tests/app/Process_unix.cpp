#include <fcntl.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <sstream>

#include "tests/app/Process.h"
#include "tests/support/Files.h"
#include "tests/support/Shell_unix.h"
#include "tests/support/Support.h"

namespace {

std::string TemporaryFile() {
    std::string name = std::string(std::getenv("XDG_RUNTIME_DIR")) + "/output-XXXXXX";
    close(mkstemp(name.data()));
    return name;
}

// What xdotool says of the visible windows of a kind. It ends without an answer when a window goes that it is
// just looking at.
std::string AskAboutWindows(const std::string& which) {
    std::string answer;
    do answer = ShellOutput("xdotool search --onlyvisible " + which + " 2>&1");
    while (answer.find("X Error") != std::string::npos);
    return answer;
}

}  // namespace

const std::filesystem::path& TestFolder() {
    static const PrivateFolders folders;  // told to the program by the environment
    return folders.Root();
}

struct Process::Parts {
    pid_t pid = -1;
    int status = 0;
    bool ended = false;
    std::string output = TemporaryFile(), errors = TemporaryFile();
};

Process::Process(std::vector<std::string> arguments, bool display) : parts_(std::make_unique<Parts>()) {
    std::string program = KIVORA_PROGRAM;
    std::vector<char*> pointers = {program.data()};
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    parts_->pid = fork();
    if (parts_->pid != 0) return;
    dup2(open(parts_->output.c_str(), O_WRONLY), STDOUT_FILENO);
    dup2(open(parts_->errors.c_str(), O_WRONLY), STDERR_FILENO);
    if (!display) {
        unsetenv("DISPLAY");
        unsetenv("WAYLAND_DISPLAY");
    }
    execv(program.c_str(), pointers.data());
    _exit(127);
}

std::unique_ptr<Process> Process::Doing(const std::vector<std::string>& words) {
    return std::make_unique<Process>(words, false);
}

Process::~Process() {
    if (!Ended()) {
        Kill();
        waitpid(parts_->pid, &parts_->status, 0);
    }
}

void Process::Signal(int number) const { kill(parts_->pid, number); }
void Process::AskToEnd() const { Signal(SIGTERM); }
void Process::Kill() const { kill(parts_->pid, SIGKILL); }
void Process::Stop() const { kill(parts_->pid, SIGSTOP); }
void Process::Continue() const { kill(parts_->pid, SIGCONT); }

bool Process::Ended() {
    if (!parts_->ended && waitpid(parts_->pid, &parts_->status, WNOHANG) == parts_->pid) parts_->ended = true;
    return parts_->ended;
}

std::optional<int> Process::Wait(std::chrono::milliseconds limit) {
    if (!Eventually([this] { return Ended(); }, limit)) return std::nullopt;
    return WIFEXITED(parts_->status) ? WEXITSTATUS(parts_->status) : -1;
}

std::string Process::Output() const { return Content(parts_->output); }
std::string Process::Errors() const { return Content(parts_->errors); }

std::vector<std::string> Windows() {
    // An icon stands for a moment on the screen itself, one pixel large, before the notification area takes
    // it.
    std::istringstream lines(AskAboutWindows("--class '^kivora$' getwindowgeometry --shell %@"));
    std::vector<std::string> windows;
    std::string id;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("WINDOW=")) id = line.substr(7);
        if (line.starts_with("WIDTH=") && line != "WIDTH=1") windows.push_back(id);
    }
    return windows;
}

bool IsSplash(const std::string& id) {
    const std::string type = ShellOutput("xprop -id " + id + " _NET_WM_WINDOW_TYPE 2>/dev/null");
    return type.empty() || type.find("_SPLASH") != std::string::npos;
}

std::string WindowTitled(const std::string& title) { return AskAboutWindows("--name '^" + title + "$'"); }

void Press(const std::string& window, const std::string& key) {
    ShellOutput("xdotool windowactivate --sync " + window + " key " + key);
}
