#pragma once
// A disk that keeps for sure only what was synchronized: what a power cut leaves of a folder after the calls
// that FileCalls.h has seen.
//
// Promised is what POSIX promises: the bytes of a file once it was synchronized, a name, new or taken away,
// once its folder was. What came later is not there, or partly: of written bytes any sectors, of names the
// first few changes of each folder. All of it is what a kill leaves.

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/faults/FileCalls.h"

class Disk {
  public:
    // What is in the folder now is on the disk.
    explicit Disk(std::filesystem::path folder);

    void Apply(const FileCall& call);

    // Writes into an empty folder what is there when the power comes back: nothing that was not promised
    // (seed 0), or parts of it, chosen by the seed.
    void PowerCut(const std::filesystem::path& into, std::uint32_t seed) const;

  private:
    struct Change {
        bool truncates = false;
        std::int64_t at = 0;  // the new size
        std::string bytes;
    };
    struct File {
        std::string synced;
        std::vector<Change> since;
    };
    using Names = std::map<std::string, std::shared_ptr<File>>;  // null for a folder
    struct Naming {
        std::string taken, given;  // whole paths; either may be empty
        std::shared_ptr<File> file;
        std::string Folder() const {
            return std::filesystem::path(given.empty() ? taken : given).parent_path();
        }
    };

    void Name(Naming naming);
    static void Rename(Names& names, const Naming& naming);
    static void Change_(std::string& bytes, const Change& change);

    std::filesystem::path folder_;
    Names names_, synced_;
    std::vector<Naming> since_;
    std::map<std::int32_t, std::string> paths_;             // of open files
    std::map<std::int32_t, std::shared_ptr<File>> opened_;  // null for a folder
};
