#pragma once
// An SQLite database, opened by one connection: the only place that knows SQLite's calls.

#include <cstdint>
#include <filesystem>
#include <string>

#include "registry/HiveDeadline.h"
#include "registry/KeepResult.h"

struct sqlite3;
struct sqlite3_stmt;

class HiveDatabase {
  public:
    HiveDatabase() = default;
    ~HiveDatabase() { Close(); }
    HiveDatabase(const HiveDatabase&) = delete;
    HiveDatabase& operator=(const HiveDatabase&) = delete;

    // Opens an existing file for reading and writing. A file that may only be read is none that can be
    // opened.
    KeepResult Open(const std::filesystem::path& file);
    void Close();

    // Calls from here on wait for other programs until then.
    void WaitUntil(HiveDeadline deadline) { deadline_ = deadline; }

    // When the last connection closes, nothing is written any more.
    void LeaveAsItIs(bool leave);

    KeepResult Execute(const char* sql);
    bool InTransaction() const;
    // The first column of the first row as text; empty when there is none.
    KeepResult Ask(const char* sql, std::string& answer);

    // Copies the database into an empty file, as it is now.
    KeepResult CopyTo(const std::filesystem::path& file);

    // What a code of SQLite says, with the kernel's error behind it.
    KeepResult ResultOf(int code) const;

    void ReleaseMemory();
    sqlite3* Handle() const { return db_; }

  private:
    static int WaitForOthers(void* self, int attempt);

    sqlite3* db_ = nullptr;
    HiveDeadline deadline_{};
};

// A prepared query that is used again and again: bind, step, and what it held is free for the next use.
class HiveQuery {
  public:
    // `query` is prepared at its first use and belongs to whoever finalizes it before the database is closed.
    HiveQuery(const HiveDatabase& database, sqlite3_stmt*& query, const char* text);
    ~HiveQuery();
    HiveQuery(const HiveQuery&) = delete;
    HiveQuery& operator=(const HiveQuery&) = delete;

    void Bind(std::int64_t number);
    void Bind(const std::string& text);  // which has to stay until the query is done
    void BindBytes(const std::string& bytes);

    // Moves to the next row; false at the end and after a failure.
    bool Next();
    // Runs a query that delivers no rows; false after a failure.
    bool Finish();
    // Whether all went well up to here.
    KeepResult Result() const { return database_.ResultOf(code_); }

    // Of the row.
    std::int64_t Number(int column) const;
    std::string Bytes(int column) const;
    bool IsNumber(int column) const;

  private:
    void Note(int code);

    const HiveDatabase& database_;
    sqlite3_stmt* query_;
    int code_ = 0;
    int bound_ = 0;
};
