#pragma once
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <string>

// What a command of the shell writes, without line breaks at its end.
inline std::string ShellOutput(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return output;
    char buffer[4096];
    for (std::size_t count; (count = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, count);
    pclose(pipe);
    while (output.ends_with('\n')) output.pop_back();
    return output;
}

// A program that goes on beside the test, until this object goes.
class Background {
  public:
    // As a command of the shell names it.
    explicit Background(const std::string& command) : pid_(fork()) {
        if (pid_ != 0) return;
        execl("/bin/sh", "sh", "-c", ("exec " + command).c_str(), nullptr);
        _exit(127);
    }
    ~Background() {
        Signal(SIGCONT);
        Signal(SIGTERM);
        waitpid(pid_, nullptr, 0);
    }
    Background(const Background&) = delete;
    Background& operator=(const Background&) = delete;
    void Signal(int number) const { kill(pid_, number); }

  private:
    const pid_t pid_;
};
