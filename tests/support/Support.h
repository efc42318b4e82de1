#pragma once
// What the tests share.

#include <filesystem>
#include <string>

// Gives the running test data and runtime folders of its own, empty and below the temporary folder, and
// removes them at its end: nothing of the user's is touched.
class PrivateFolders {
  public:
    PrivateFolders();
    ~PrivateFolders();
    PrivateFolders(const PrivateFolders&) = delete;
    PrivateFolders& operator=(const PrivateFolders&) = delete;
    const std::filesystem::path& Root() const { return root_; }

  private:
    std::filesystem::path root_;
};

// A file name behind which nothing can be written because there is no room.
std::wstring FileWithoutRoom();

// True for a file or folder that no other user can look into.
bool IsForTheUserOnly(const std::filesystem::path& path);

// Handles that the process has open.
int CountHandles();
