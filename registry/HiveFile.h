#pragma once
// The file that holds the hive: an SQLite database that several processes may have open. Its tables are
// described in docs/hive.md. This is the only place that knows SQLite.
//
// A file that is no database or a damaged one is moved aside under another name, never deleted, and a new one
// takes its place.

#include <cstdint>
#include <filesystem>
#include <memory>

#include "registry/HiveImage.h"
#include "registry/KeepResult.h"

struct sqlite3;
struct sqlite3_stmt;

class HiveFile : private HiveWriter {
  public:
    HiveFile() = default;
    ~HiveFile() override;
    HiveFile(const HiveFile&) = delete;
    HiveFile& operator=(const HiveFile&) = delete;

    // Opens the file, making it and its folder (readable for the user alone), and reads it. Null when that is
    // impossible, and `result` says why; the file is as it was then.
    std::unique_ptr<HiveImage> Open(const std::filesystem::path& file, KeepResult& result);

    // Reads the whole file; null when that fails, and `result` says why.
    std::unique_ptr<HiveImage> Load(KeepResult& result);

    // True when another process has written since the last Load, or when that cannot be told.
    bool ChangedElsewhere();

    // From here to Commit or Rollback nobody else writes. Waits for other writers, half a minute at most; the
    // result says when that did not help or the file cannot be written.
    KeepResult Begin();
    // Writes the changes down durably, or, when the result says so, nothing.
    KeepResult Commit(const HiveImage& image);
    void Rollback();

  private:
    enum Query {
        kDataVersion,
        kReadKeys,
        kReadValues,
        kAddKey,
        kRenameKey,
        kRemoveKey,
        kRemoveValues,
        kPutValue,
        kRemoveValue,
        kQueries
    };
    class Run;

    KeepResult TryOpen(const std::filesystem::path& file);
    int CreateTables();
    int ReadInto(HiveImage& image);
    bool Execute(const char* sql);
    KeepResult ResultOf(int code) const;
    void Close();

    bool AddKey(std::int64_t id, std::int64_t parent, const std::string& name) override;
    bool RenameKey(std::int64_t id, const std::string& name) override;
    bool RemoveKey(std::int64_t id) override;
    bool PutValue(std::int64_t key, const HiveValue& value) override;
    bool RemoveValue(std::int64_t key, const std::string& name) override;

    sqlite3* db_ = nullptr;
    sqlite3_stmt* queries_[kQueries] = {};
    std::int64_t dataVersion_ = 0;
};
