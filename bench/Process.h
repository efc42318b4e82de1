#pragma once
// A program that is measured, and what the kernel knows of it.

#include <sys/types.h>

#include <functional>
#include <string>
#include <vector>

class Process {
  public:
    // Starts it at once. What it prints is dropped.
    explicit Process(const std::vector<std::string>& command);
    // Runs the function in a process of its own, whose result is that of the function.
    explicit Process(const std::function<int()>& work);
    // Ends it with SIGTERM.
    ~Process();
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    pid_t Id() const { return pid_; }
    bool Runs();
    // Waits for its end; its exit status.
    int Wait();

    double Pss() const;                     // MB; what is shared counts in parts
    unsigned long ContextSwitches() const;  // of all its threads
  private:
    const pid_t pid_;
    bool ended_ = false;
    int status_ = 0;
};

// Runs a command to its end; throws when it fails.
void Do(const std::vector<std::string>& command);

// Milliseconds of CPU that a process has used, in all its threads.
double CpuOf(pid_t pid);
