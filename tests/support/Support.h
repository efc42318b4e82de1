#pragma once
// What the tests share.

#include <filesystem>
#include <string>

// Gives the running test data and runtime folders of its own, empty and below the temporary folder, and removes
// them at its end: nothing of the user's is touched.
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
