#pragma once
// A disk that keeps for sure only what was synchronized: what a power cut leaves of a folder after the calls
// that FileCalls.h has seen.
//
// Promised is what POSIX promises: the bytes of a file once it was synchronized, a name, new or taken away,
// once its folder was. What came later is not there, or partly: of the bytes any sectors, of the names all
// those of any folders. All of it is what a kill leaves.

#include <sys/types.h>

#include <filesystem>
#include <map>

#include "tests/faults/FileCalls.h"

class Disk {
  public:
    // What is in the folder now is on the disk.
    explicit Disk(std::filesystem::path folder);
    ~Disk();
    Disk(const Disk&) = delete;
    Disk& operator=(const Disk&) = delete;

    void Apply(const FileCall& call);

    // Leaves in the folder what is there when the power comes back: nothing that was not promised (seed 0),
    // or parts of it, chosen by the seed.
    void PowerCut(std::uint32_t seed);

  private:
    struct File {
        int held = -1;  // so that no other file gets its number
        std::string synced = {};
    };
    using Names = std::map<std::filesystem::path, ino_t>;  // 0 for a folder

    ino_t NumberOf(const std::filesystem::path& path);
    // Puts the names that are in a folder now in the place of those that it had.
    void TakeNames(const std::filesystem::path& folder, Names& names);

    std::filesystem::path folder_;
    Names names_;
    std::map<ino_t, File> files_;
};
