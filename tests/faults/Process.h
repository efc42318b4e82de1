#pragma once
// What a run needs from the kernel: a process, a folder and files of its own.

#include <stdlib.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <functional>
#include <string>

// Does the work in a process of its own, for which the user's data lie in the folder. The way it ended as
// waitpid tells it; one that hangs is killed by SIGALRM.
inline int InProcess(const std::filesystem::path& data, const std::function<void()>& work) {
    constexpr unsigned kLongest = 60;  // seconds
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

// A file without a name, which processes share.
class Sheet {
  public:
    ~Sheet() { close(file_); }
    operator int() const { return file_; }
    // All that was written to it.
    std::string Text() const {
        std::string text(static_cast<std::size_t>(lseek(file_, 0, SEEK_END)), '\0');
        (void)!pread(file_, text.data(), text.size(), 0);
        return text;
    }

  private:
    const int file_ = memfd_create("sheet", MFD_CLOEXEC);
};

// An empty folder that is removed in the end.
struct Folder {
    Folder() {
        std::string name = (std::filesystem::temp_directory_path() / "kivora-faults-XXXXXX").string();
        if (mkdtemp(name.data())) path = std::filesystem::canonical(name);
    }
    ~Folder() {
        std::error_code ignored;
        if (!path.empty()) std::filesystem::remove_all(path, ignored);
    }
    std::filesystem::path path;
};
