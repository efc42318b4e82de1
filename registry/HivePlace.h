#pragma once
// The folder of the hive and the files in it: private, found by their names, put in place and set aside.

#include <cstdint>
#include <filesystem>
#include <string>

#include "registry/HiveDeadline.h"
#include "registry/KeepResult.h"

// Why the kernel refused, from its error number; `context` goes in front of its words.
KeepResult SystemFailure(int error, const std::string& context);

// A file's path with something appended to its name.
std::filesystem::path Beside(const std::filesystem::path& file, const std::string& end);

// Makes the folder, readable for the user alone, or takes everybody else's rights to it.
KeepResult MakePrivateFolder(const std::filesystem::path& folder);

// Takes everybody else's rights to an existing file.
void MakePrivateFile(const std::filesystem::path& file);

// An empty file for the user alone, in place of one of that name.
KeepResult MakeEmptyFile(const std::filesystem::path& file);

// Behind symbolic links, the file that a hive of this path lies in. A failure when no regular file can lie
// there: a folder, a device, a link to nowhere.
KeepResult FindFile(const std::filesystem::path& path, std::filesystem::path& file);

// Which file lies at a path; nothing at all for a path where none lies, or when that cannot be told.
struct FileIdentity {
    std::uint64_t device = 0, number = 0;
    bool operator==(const FileIdentity&) const = default;
};
FileIdentity IdentityOf(const std::filesystem::path& file);
// True when another file lies there than once, or none. What cannot be told is no other.
bool IsAnother(const std::filesystem::path& file, const FileIdentity& once);

// Reads all of a file, nothing when there is none. False when the disk or its rights refuse something of it,
// and errno says why; zeros stand for bytes that were refused.
bool ReadWhole(const std::filesystem::path& file, std::string& bytes);

// While it lives no other process opens this hive, so only one of them makes it, rewrites it or sets it
// aside.
class HiveLock {
  public:
    HiveLock(const std::filesystem::path& file, HiveDeadline deadline);
    ~HiveLock();
    HiveLock(const HiveLock&) = delete;
    HiveLock& operator=(const HiveLock&) = delete;
    const KeepResult& Result() const { return result_; }

  private:
    int lock_ = -1;
    KeepResult result_;
};

// Waits until all of a file is on the disk.
KeepResult BringToDisk(const std::filesystem::path& file);

// PutInPlace of base/NewFile.h.
KeepResult PutHiveInPlace(const std::filesystem::path& finished, const std::filesystem::path& file);

// Gives the file a further name, FILE.WORD-YYYYMMDD-HHMMSS, and moves its log there, so that the next file of
// its name begins without one. `aside` receives the name.
KeepResult SetAside(const std::filesystem::path& file, const std::string& word, std::filesystem::path& aside);
