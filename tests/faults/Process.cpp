#include "tests/faults/Process.h"

#include <stdlib.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>

namespace fs = std::filesystem;

namespace {
constexpr unsigned kLongest = 60;  // seconds
}

int InProcess(const fs::path& data, const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        setenv("XDG_DATA_HOME", data.c_str(), 1);
        alarm(kLongest);
        work();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

Sheet::Sheet() : file_(memfd_create("sheet", MFD_CLOEXEC)) {}
Sheet::~Sheet() { close(file_); }

Folder::Folder() {
    std::string name = (fs::temp_directory_path() / "kivora-faults-XXXXXX").string();
    if (mkdtemp(name.data())) path_ = name;
}
Folder::~Folder() {
    std::error_code ignored;
    if (!path_.empty()) fs::remove_all(path_, ignored);
}
