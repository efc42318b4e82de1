#pragma once
// A printing service of the tests' own, in a folder of its own, whose printers throw their paper away and
// whose spool keeps every document.

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Events.h"
#include "tests/support/Shell_unix.h"

class CupsServer {
  public:
    // Not running yet. This process asks no other service from now on. script: tests/cups, which starts it.
    explicit CupsServer(std::string script) : script_(std::move(script)) {
        std::filesystem::create_directory(root_);
        setenv("CUPS_SERVER", (root_ / "socket").c_str(), 1);
        setenv("CUPS_SERVERROOT", (root_ / "conf").c_str(), 1);
    }

    void Start() {
        service_.emplace("'" + script_ + "' '" + root_.string() + "'");
        RunUntil([&] { return Run("lpstat -r").find("is running") != std::string::npos; });
    }
    void Stop() { service_.reset(); }
    void Signal(int signal) const { service_->Signal(signal); }
    // Its printers and jobs, while it does not run.
    void Forget() const {
        for (const auto& entry : std::filesystem::directory_iterator(root_)) remove_all(entry.path());
    }

    // What lpoptions has set for all users: lines as CUPS keeps them.
    void SetOptions(const std::string& lines) const { std::ofstream(root_ / "conf" / "lpoptions") << lines; }

    // Runs one of the service's own programs, such as lpadmin; what it wrote.
    std::string Run(const std::string& command) const {
        return ShellOutput("PATH=$PATH:/usr/sbin LC_ALL=C " + command + " 2>&1");
    }

    // The documents of all jobs, the newest last.
    std::vector<std::filesystem::path> Documents() const {
        std::vector<std::filesystem::path> documents;
        for (const auto& entry : std::filesystem::directory_iterator(root_ / "spool"))
            if (entry.path().filename().string()[0] == 'd') documents.push_back(entry);
        std::sort(documents.begin(), documents.end());
        return documents;
    }

  private:
    const std::string script_;
    const std::filesystem::path root_ = std::filesystem::temp_directory_path() / "cups";
    std::optional<Background> service_;
};
