#pragma once
// The file that holds the hive: an SQLite database that several processes may have open. Its tables are
// described in docs/hive.md. Nothing is repaired here: what is damaged is said to be, and nothing is written
// to it.

#include <cstdint>
#include <filesystem>
#include <memory>

#include "registry/HiveDatabase.h"
#include "registry/HiveImage.h"
#include "registry/HivePlace.h"
#include "registry/KeepResult.h"

class HiveFile : private HiveWriter {
  public:
    HiveFile() = default;
    ~HiveFile() override { Close(); }
    HiveFile(const HiveFile&) = delete;
    HiveFile& operator=(const HiveFile&) = delete;

    // Makes a file of this image, as yet under another name than its own. A failure leaves none.
    static KeepResult Make(const std::filesystem::path& file, HiveImage& image);

    // Opens the file, checks it from end to end and reads it.
    KeepResult Open(const std::filesystem::path& file, std::unique_ptr<HiveImage>& image,
                    HiveDeadline deadline);

    // Another file, or none, lies where the opened one lay: what is written to it is lost.
    bool HasMoved() const;

    // Reads the whole file, which holds what other processes have written meanwhile.
    KeepResult Load(std::unique_ptr<HiveImage>& image);

    // True when another process has written since the last Load, or when that cannot be told.
    bool ChangedElsewhere();

    // From here to Commit or Rollback nobody else writes.
    KeepResult Begin(HiveDeadline deadline);
    // Writes the changes down durably, or, when the result says so, nothing.
    KeepResult Commit(HiveImage& image);
    void Rollback();

    // Brings what the log holds into the file, so that the next changes are written over its beginning. False
    // when that is impossible for now.
    bool RestartLog();

    bool InTransaction() const { return database_.InTransaction(); }

    // Closing it writes nothing any more.
    void LeaveAsItIs() { database_.LeaveAsItIs(true); }

    // Copies all of it into an empty file.
    KeepResult CopyTo(const std::filesystem::path& file) { return database_.CopyTo(file); }

  private:
    enum Query {
        kDataVersion,
        kReadKeys,
        kReadValues,
        kReadChecksums,
        kAddKey,
        kRenameKey,
        kRemoveKey,
        kRemoveValues,
        kPutValue,
        kRemoveValue,
        kPutChecksum,
        kQueries
    };
    class Run;

    KeepResult CheckAndRead(HiveImage& image);
    KeepResult ReadInto(HiveImage& image);
    void Close();

    bool AddKey(std::int64_t id, std::int64_t parent, const std::string& name) override;
    bool RenameKey(std::int64_t id, const std::string& name) override;
    bool RemoveKey(std::int64_t id) override;
    bool PutValue(std::int64_t key, const HiveValue& value) override;
    bool RemoveValue(std::int64_t key, const std::string& name) override;
    bool PutChecksum(std::int64_t key, std::uint64_t checksum) override;
    bool Noted(Run& run);

    HiveDatabase database_;
    sqlite3_stmt* queries_[kQueries] = {};
    KeepResult failure_;  // of the first query of a Commit that failed
    std::int64_t dataVersion_ = 0;
    std::filesystem::path file_;
    FileIdentity identity_, logIdentity_;
};

// A number of 32 bits as the registry's bytes.
std::string RegistryBytes(std::int64_t number);
