#include "tests/print/CupsServer_unix.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <stdexcept>
#include <vector>

#include "tests/support/Events.h"

namespace fs = std::filesystem;

namespace {

std::vector<fs::path> DocumentsIn(const fs::path& spool) {
    std::vector<fs::path> documents;
    for (const auto& entry : fs::directory_iterator(spool))
        if (entry.path().filename().string()[0] == 'd') documents.push_back(entry);
    std::sort(documents.begin(), documents.end());
    return documents;
}

}  // namespace

CupsServer::CupsServer() {
    std::string name = (fs::temp_directory_path() / "kivora-cups-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    root_ = name;
    setenv("CUPS_SERVER", (name + "/socket").c_str(), 1);
}

CupsServer::~CupsServer() {
    Stop();
    std::error_code ignored;
    fs::remove_all(root_, ignored);
}

void CupsServer::Start() {
    pid_ = fork();
    if (pid_ == 0) {
        execl(CUPS_SCRIPT, CUPS_SCRIPT, root_.c_str(), nullptr);
        _exit(127);
    }
    RunUntil([&] { return Run("lpstat -r").find("is running") != std::string::npos; });
}

void CupsServer::Stop() {
    if (pid_ < 0) return;
    kill(pid_, SIGCONT);
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
    pid_ = -1;
}

void CupsServer::Signal(int signal) const { kill(pid_, signal); }

void CupsServer::Forget() const {
    for (const auto& entry : fs::directory_iterator(root_)) fs::remove_all(entry);
}

std::string CupsServer::Run(const std::string& command) const {
    return CommandOutput("PATH=$PATH:/usr/sbin LC_ALL=C " + command + " 2>&1");
}

fs::path CupsServer::Document() const {
    const std::vector<fs::path> documents = DocumentsIn(root_ / "spool");
    return documents.empty() ? fs::path() : documents.back();
}

std::size_t CupsServer::Documents() const { return DocumentsIn(root_ / "spool").size(); }

std::string CommandOutput(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return output;
    std::array<char, 4096> piece;
    while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), pipe))
        output.append(piece.data(), count);
    pclose(pipe);
    while (!output.empty() && output.back() == '\n') output.pop_back();
    return output;
}
