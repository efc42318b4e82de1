#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

#include "app/HandOver.h"
#include "base/FileName.h"
#include "tests/app/OtherCopy.h"

struct OtherCopy::Process {
    pid_t pid = -1;
    int status = 0;
    bool ended = false;
};

OtherCopy::OtherCopy(std::unique_ptr<Process> process) : process_(std::move(process)) {}
OtherCopy::OtherCopy(OtherCopy&& other) noexcept = default;
OtherCopy::~OtherCopy() {
    if (process_ && !process_->ended) Kill();
}

OtherCopy OtherCopy::Doing(const std::function<int()>& work) {
    auto process = std::make_unique<Process>();
    process->pid = fork();
    if (process->pid == 0) _exit(work());
    return OtherCopy(std::move(process));
}

OtherCopy OtherCopy::Sender(const std::vector<std::wstring>& names) {
    return Doing([&] {
        close_range(3, ~0U, 0);  // a copy started by the user shares nothing with the first one
        for (const std::wstring& name : names) {
            if (!HandOver(name)) return 1;
        }
        return 0;
    });
}

OtherCopy OtherCopy::Holder() {
    int ready[2];
    if (pipe(ready) != 0) throw std::runtime_error("pipe");
    OtherCopy copy = Doing([&] {
        const auto role = RunningCopy::Claim();
        if (!role || write(ready[1], "r", 1) != 1) return 1;
        return pause();
    });
    close(ready[1]);
    char byte = 0;
    if (read(ready[0], &byte, 1) != 1) throw std::runtime_error("the other copy did not get the role");
    close(ready[0]);
    return copy;
}

void OtherCopy::Kill() {
    kill(process_->pid, SIGKILL);
    waitpid(process_->pid, nullptr, 0);
    process_->ended = true;
}

bool OtherCopy::Ended() {
    Process& process = *process_;
    if (!process.ended && waitpid(process.pid, &process.status, WNOHANG) == process.pid) process.ended = true;
    return process.ended;
}

int OtherCopy::Result() const { return WIFEXITED(process_->status) ? WEXITSTATUS(process_->status) : -1; }

std::vector<std::wstring> NamesOfAllKinds() {
    return {L"/Eigene Notizen/ä ö ü €.kvr", L"/line\nbreak", FileName("/Latin-1 \xE4.kvr"), L"/ /[print]",
            L"/" + std::wstring(4000, L'x')};
}

int ManyCopies() { return 40; }
