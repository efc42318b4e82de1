#pragma once
// The built program as a process, and the screen around it. Needs a display with a window manager and
// xdotool.

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class Process {
  public:
    // Starts the program with arguments. Without `display` it has none.
    explicit Process(std::vector<std::string> arguments, bool display = true);
    ~Process();  // kills it
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void Signal(int signal) const;
    bool Ended();
    // Waits for the end; the exit code, -1 when a signal ended it, nothing when the time is over.
    std::optional<int> Wait(std::chrono::milliseconds limit = std::chrono::seconds(5));
    // What it wrote. After its end.
    std::string Output() const;
    std::string Errors() const;

  private:
    pid_t pid_ = -1;
    int status_ = 0;
    bool ended_ = false;
    std::string output_, errors_;  // names of files
};

// What a command of the shell writes, without line breaks at its end.
std::string ShellOutput(const std::string& command);

bool Eventually(const std::function<bool()>& condition,
                std::chrono::milliseconds limit = std::chrono::seconds(5));

// Ids of the program's visible windows, those of its icons included.
std::vector<std::string> Windows();
// True for the window of the picture that a start shows for a moment, also when it has just gone.
bool IsSplash(const std::string& id);
// Waits for a window of that title and gives its id; empty when there is none.
std::string WaitForWindow(const std::string& title,
                          std::chrono::milliseconds limit = std::chrono::seconds(5));
