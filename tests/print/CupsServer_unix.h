#pragma once
// A printing service of the tests' own, in a folder of its own, whose printers throw their paper away and
// whose spool keeps every document.

#include <sys/types.h>

#include <filesystem>
#include <string>

class CupsServer {
  public:
    // Not running yet. This process asks no other service from now on.
    CupsServer();
    ~CupsServer();
    CupsServer(const CupsServer&) = delete;
    CupsServer& operator=(const CupsServer&) = delete;

    void Start();
    void Stop();
    void Signal(int signal) const;
    // Its printers and jobs, while it does not run.
    void Forget() const;

    // Runs one of the service's own programs, such as lpadmin; what it wrote.
    std::string Run(const std::string& command) const;

    // The document of the newest job, empty when there is none; and the number of documents.
    std::filesystem::path Document() const;
    std::size_t Documents() const;

  private:
    std::filesystem::path root_;
    pid_t pid_ = -1;
};

// What a command of the shell writes.
std::string CommandOutput(const std::string& command);
