#include "tests/print/CupsServer_unix.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <thread>

namespace fs = std::filesystem;

CupsServer::CupsServer() {
    std::string name = (fs::temp_directory_path() / "kivora-cups-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    root_ = name;
    // The service works under a name of its own when root starts it.
    const bool root = getuid() == 0;
    if (root) fs::permissions(root_, fs::perms(0755));
    for (const char* folder : {"spool/tmp", "cache", "state", "log", "conf"})
        fs::create_directories(root_ / folder);
    std::ofstream(root_ / "conf/cups-files.conf")
        << "ServerRoot " << name << "/conf\nServerBin /usr/lib/cups\nDataDir /usr/share/cups\nCacheDir "
        << name << "/cache\nStateDir " << name << "/state\nRequestRoot " << name << "/spool\nTempDir " << name
        << "/spool/tmp\nAccessLog " << name << "/log/access\nErrorLog " << name << "/log/error\nPageLog "
        << name << "/log/page\nFileDevice Yes\nSystemGroup root\nUser "
        << (root ? "lp" : CommandOutput("id -un")) << "\nGroup " << (root ? "lp" : CommandOutput("id -gn"))
        << "\n";
    std::ofstream(root_ / "conf/cupsd.conf")
        << "Listen " << name << "/socket\nBrowsing Off\nWebInterface No\nDefaultAuthType None\n"
        << "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
        << "<Location /admin>\nOrder allow,deny\nAllow all\n</Location>\n"
        << "<Policy default>\n<Limit All>\nOrder allow,deny\nAllow all\n</Limit>\n</Policy>\n";
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
        const std::string conf = (root_ / "conf/cupsd.conf").string(),
                          files = (root_ / "conf/cups-files.conf").string();
        execl("/usr/sbin/cupsd", "cupsd", "-f", "-c", conf.c_str(), "-s", files.c_str(), nullptr);
        _exit(127);
    }
    for (int i = 0; i < 50 && Run("lpstat -r").find("is running") == std::string::npos; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
    }
}

void CupsServer::Stop() {
    if (pid_ < 0) return;
    kill(pid_, SIGCONT);
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
    pid_ = -1;
}

void CupsServer::Signal(int signal) const { kill(pid_, signal); }

std::string CupsServer::Run(const std::string& command) const {
    return CommandOutput("PATH=$PATH:/usr/sbin LC_ALL=C " + command + " 2>&1");
}

fs::path CupsServer::Document() const {
    fs::path newest;
    for (const auto& entry : fs::directory_iterator(root_ / "spool")) {
        if (entry.path().filename().string()[0] == 'd' && entry.path() > newest) newest = entry.path();
    }
    return newest;
}

std::size_t CupsServer::Documents() const {
    std::size_t count = 0;
    for (const auto& entry : fs::directory_iterator(root_ / "spool")) {
        count += entry.path().filename().string()[0] == 'd';
    }
    return count;
}

std::string CommandOutput(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return output;
    std::array<char, 4096> piece;
    while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), pipe)) {
        output.append(piece.data(), count);
    }
    pclose(pipe);
    while (!output.empty() && output.back() == '\n') output.pop_back();
    return output;
}
