#include "registry/HiveDatabase.h"

#include <sqlite3.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

#include "registry/HivePlace.h"

namespace {

// SQLite's own access to files, with one difference: where it cannot tell who holds the log, it waits by
// itself, a hundred times and ten seconds altogether. So many naps are taken here, but short ones.
const char* FileSystem() {
    static sqlite3_vfs files = [] {
        sqlite3_vfs usual = *sqlite3_vfs_find(nullptr);
        usual.zName = "kivora";
        usual.xSleep = [](sqlite3_vfs*, int microseconds) {
            std::this_thread::sleep_for(std::chrono::microseconds(std::min(microseconds, 200)));
            return microseconds;
        };
        return usual;
    }();
    [[maybe_unused]] static const int registered = sqlite3_vfs_register(&files, 0);
    return files.zName;
}

}  // namespace

KeepResult HiveDatabase::Open(const std::filesystem::path& file) {
    // Pages are taken one by one, so that they can be given back after reading.
    [[maybe_unused]] static const int configured = sqlite3_config(SQLITE_CONFIG_PAGECACHE, nullptr, 0, 0);
    const int code =
        sqlite3_open_v2(file.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, FileSystem());
    if (code != SQLITE_OK) return ResultOf(code);
    sqlite3_extended_result_codes(db_, 1);
    sqlite3_busy_handler(db_, WaitForOthers, this);
    // SQLite falls back to reading where it may not write.
    return ResultOf(sqlite3_db_readonly(db_, "main") == 0 ? SQLITE_OK : SQLITE_READONLY);
}

void HiveDatabase::Close() {
    sqlite3_close(db_);
    db_ = nullptr;
}

int HiveDatabase::WaitForOthers(void* self, int) {
    constexpr auto kPause = std::chrono::milliseconds(2);
    if (std::chrono::steady_clock::now() + kPause > static_cast<HiveDatabase*>(self)->deadline_) return 0;
    std::this_thread::sleep_for(kPause);
    return 1;
}

void HiveDatabase::LeaveAsItIs(bool leave) {
    sqlite3_db_config(db_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, leave ? 1 : 0, nullptr);
}

KeepResult HiveDatabase::Execute(const char* sql) {
    return ResultOf(sqlite3_exec(db_, sql, nullptr, nullptr, nullptr));
}

bool HiveDatabase::InTransaction() const { return db_ && sqlite3_get_autocommit(db_) == 0; }

KeepResult HiveDatabase::Ask(const char* sql, std::string& answer) {
    sqlite3_stmt* prepared = nullptr;
    KeepResult result;
    {
        HiveQuery query(*this, prepared, sql);
        answer = query.Next() ? query.Bytes(0) : std::string();
        result = query.Result();
    }
    sqlite3_finalize(prepared);
    return result;
}

KeepResult HiveDatabase::CopyTo(const std::filesystem::path& file) {
    HiveDatabase copy;
    KeepResult result = copy.Open(file);
    if (result.Kept()) result = copy.Execute("PRAGMA synchronous = OFF");  // who names the file syncs it
    if (!result.Kept()) return result;
    sqlite3_backup* const backup = sqlite3_backup_init(copy.db_, "main", db_, "main");
    if (!backup) return copy.ResultOf(sqlite3_extended_errcode(copy.db_));
    const int step = sqlite3_backup_step(backup, -1);
    const int end = sqlite3_backup_finish(backup);
    if (end != SQLITE_OK) return copy.ResultOf(end);
    return ResultOf(step == SQLITE_DONE ? SQLITE_OK : step);
}

void HiveDatabase::ReleaseMemory() { sqlite3_db_release_memory(db_); }

KeepResult HiveDatabase::ResultOf(int code) const {
    if (code == SQLITE_OK) return {};
    // SQLite does not remember the error of every failed write.
    const int remembered = db_ ? sqlite3_system_errno(db_) : 0;
    const int error = remembered ? remembered : errno;
    const std::string said = sqlite3_errstr(code);
    switch (code & 0xFF) {
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
        case SQLITE_PROTOCOL:
            return {KeepFailure::Locked, said};
        case SQLITE_FULL:
            return {KeepFailure::DiskFull, said};
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
        case SQLITE_ERROR:  // the tables are others
        case SQLITE_MISMATCH:
        case SQLITE_CONSTRAINT:
            return {KeepFailure::Damaged, said};
        case SQLITE_READONLY: {
            const char* const file = db_ ? sqlite3_db_filename(db_, "main") : nullptr;
            return SystemFailure(file && access(file, W_OK) != 0 ? errno : EACCES, said);
        }
        default:
            if (error) return SystemFailure(error, said);
            return {(code & 0xFF) == SQLITE_IOERR ? KeepFailure::BadDisk : KeepFailure::Failed, said, code};
    }
}

HiveQuery::HiveQuery(const HiveDatabase& database, sqlite3_stmt*& query, const char* text)
    : database_(database) {
    if (!query)
        code_ = sqlite3_prepare_v3(database.Handle(), text, -1, SQLITE_PREPARE_PERSISTENT, &query, nullptr);
    query_ = query;
}

HiveQuery::~HiveQuery() { sqlite3_reset(query_); }

void HiveQuery::Note(int code) {
    if (code_ == SQLITE_OK) code_ = code;
}

void HiveQuery::Bind(std::int64_t number) { Note(sqlite3_bind_int64(query_, ++bound_, number)); }

void HiveQuery::Bind(const std::string& text) {
    Note(sqlite3_bind_text64(query_, ++bound_, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8));
}

void HiveQuery::BindBytes(const std::string& bytes) {
    Note(sqlite3_bind_blob64(query_, ++bound_, bytes.data(), bytes.size(), SQLITE_STATIC));
}

bool HiveQuery::Next() {
    if (code_ != SQLITE_OK) return false;
    const int step = sqlite3_step(query_);
    if (step != SQLITE_ROW && step != SQLITE_DONE) code_ = step;
    return step == SQLITE_ROW;
}

bool HiveQuery::Finish() {
    Next();
    return code_ == SQLITE_OK;
}

std::int64_t HiveQuery::Number(int column) const { return sqlite3_column_int64(query_, column); }

std::string HiveQuery::Bytes(int column) const {
    const void* const bytes = sqlite3_column_blob(query_, column);
    return bytes ? std::string(static_cast<const char*>(bytes),
                               static_cast<std::size_t>(sqlite3_column_bytes(query_, column)))
                 : std::string();
}

bool HiveQuery::IsNumber(int column) const { return sqlite3_column_type(query_, column) == SQLITE_INTEGER; }
