#pragma once
// What a run needs from the kernel: a process, a folder and files of its own.

#include <filesystem>
#include <functional>

// Does the work in a process of its own, for which the user's data lie in the folder. The way it ended as
// waitpid tells it; one that hangs is killed by SIGALRM.
int InProcess(const std::filesystem::path& data, const std::function<void()>& work);

// A file without a name, which processes share.
class Sheet {
  public:
    Sheet();
    ~Sheet();
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;
    operator int() const { return file_; }

  private:
    int file_;
};

// An empty folder that is removed in the end.
class Folder {
  public:
    Folder();
    ~Folder();
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

  private:
    std::filesystem::path path_;
};
