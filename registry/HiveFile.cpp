#include "registry/HiveFile.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <ctime>
#include <string>
#include <thread>

namespace fs = std::filesystem;

namespace {

constexpr std::int64_t kFormat = 1;  // in user_version

constexpr const char* kTables = R"(
BEGIN IMMEDIATE;
CREATE TABLE IF NOT EXISTS registry_key(
    id INTEGER PRIMARY KEY,
    parent INTEGER REFERENCES registry_key(id),
    name TEXT NOT NULL);
CREATE TABLE IF NOT EXISTS key_value(
    key INTEGER NOT NULL REFERENCES registry_key(id),
    name TEXT NOT NULL,
    type INTEGER NOT NULL,
    data,
    PRIMARY KEY(key, name)) WITHOUT ROWID;
CREATE VIEW IF NOT EXISTS registry AS
    WITH RECURSIVE place(id, path) AS (
        SELECT id, name FROM registry_key WHERE parent IS NULL
        UNION ALL
        SELECT k.id, p.path || '\' || k.name FROM registry_key k JOIN place p ON k.parent = p.id)
    SELECT path, name, type, data FROM place LEFT JOIN key_value ON key = place.id;
INSERT OR IGNORE INTO registry_key VALUES
    (0, NULL, 'HKCR'), (1, NULL, 'HKCU'), (2, NULL, 'HKLM'), (3, NULL, 'HKU'), (4, NULL, 'HKPD'),
    (5, NULL, 'HKCC'), (6, NULL, 'HKDD');
PRAGMA user_version = 1;
COMMIT;
)";

constexpr auto kPause = std::chrono::milliseconds(2);
constexpr int kMostPauses = 15'000;  // half a minute: whoever holds the file longer hangs

// Sleeps until another process lets the file go.
int WaitForOthers(void*, int pauses) {
    if (pauses >= kMostPauses) return 0;
    std::this_thread::sleep_for(kPause);
    return 1;
}

// While it lives no other process opens a hive in the folder, so only one of them makes the file or moves a
// damaged one aside.
class FolderLock {
  public:
    explicit FolderLock(const fs::path& folder)
        : file_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
        for (int pauses = 0; file_ >= 0 && flock(file_, LOCK_EX | LOCK_NB) != 0;) {
            if (!WaitForOthers(nullptr, pauses++)) {
                close(file_);
                file_ = -1;
            }
        }
    }
    ~FolderLock() {
        if (file_ >= 0) close(file_);
    }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;
    bool Held() const { return file_ >= 0; }

  private:
    int file_;
};

// Takes group and others every right to an existing file or folder.
void MakePrivate(const fs::path& path) {
    struct stat status;
    if (stat(path.c_str(), &status) == 0 && (status.st_mode & 077) != 0)
        (void)!chmod(path.c_str(), status.st_mode & 0700);
}

bool MakePrivateFolder(const fs::path& folder) {
    std::error_code failed;
    fs::create_directories(folder.parent_path(), failed);
    if (mkdir(folder.c_str(), 0700) == 0) return true;
    MakePrivate(folder);
    return fs::is_directory(folder, failed);
}

void MakePrivateFile(const fs::path& file) {
    const int made = open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (made >= 0)
        close(made);
    else
        MakePrivate(file);
}

bool MoveAside(const fs::path& file) {
    char stamp[32];
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::strftime(stamp, sizeof stamp, ".defekt-%Y%m%d-%H%M%S", &local);
    fs::path target = file;
    target += stamp;
    std::error_code failed;
    for (int number = 2; fs::exists(target, failed); ++number) {
        target = file;
        target += std::string(stamp).append("-").append(std::to_string(number));
    }
    fs::rename(file, target, failed);
    if (failed) return false;
    for (const char* companion : {"-wal", "-shm"}) {
        fs::path from = file, to = target;
        from += companion;
        to += companion;
        std::error_code missing;
        fs::rename(from, to, missing);
    }
    return true;
}

// Why the kernel refused.
KeepFailure FailureOf(int error) {
    switch (error) {
        case EACCES:
        case EPERM:
            return KeepFailure::NoAccess;
        case EROFS:
            return KeepFailure::ReadOnly;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return KeepFailure::DiskFull;
        default:
            return KeepFailure::Failed;
    }
}

std::string Bytes(sqlite3_stmt* query, int column) {
    const void* const bytes = sqlite3_column_blob(query, column);
    return bytes ? std::string(static_cast<const char*>(bytes),
                               static_cast<std::size_t>(sqlite3_column_bytes(query, column)))
                 : std::string();
}

// Numbers of 32 bits are numbers in the file too.
bool IsNumber(const HiveValue& value) { return value.type == 4 && value.data.size() == 4; }

std::int32_t ToNumber(const std::string& data) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) number = number << 8 | static_cast<unsigned char>(data[i]);
    return static_cast<std::int32_t>(number);
}

std::string FromNumber(std::int64_t number) {
    std::string data;
    for (int shift = 0; shift < 32; shift += 8) data += static_cast<char>(number >> shift & 0xFF);
    return data;
}

}  // namespace

// One use of a prepared query: bind, step, and what it held is free for the next use.
class HiveFile::Run {
  public:
    Run(HiveFile& file, Query which) {
        static constexpr const char* texts[kQueries] = {
            "PRAGMA data_version",
            "SELECT id, parent, name FROM registry_key WHERE parent IS NOT NULL ORDER BY id",
            "SELECT key, name, type, data FROM key_value",
            "INSERT INTO registry_key VALUES(?, ?, ?)",
            "UPDATE registry_key SET name = ?2 WHERE id = ?1",
            "DELETE FROM registry_key WHERE id = ?",
            "DELETE FROM key_value WHERE key = ?",
            "INSERT OR REPLACE INTO key_value VALUES(?, ?, ?, ?)",
            "DELETE FROM key_value WHERE key = ? AND name = ?"};
        sqlite3_stmt*& query = file.queries_[which];
        if (!query && file.db_)
            result_ =
                sqlite3_prepare_v3(file.db_, texts[which], -1, SQLITE_PREPARE_PERSISTENT, &query, nullptr);
        query_ = query;
    }
    ~Run() { sqlite3_reset(query_); }
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    void Bind(std::int64_t number) { Note(sqlite3_bind_int64(query_, ++bound_, number)); }
    // The text has to stay until the query is done.
    void Bind(const std::string& text) {
        Note(sqlite3_bind_text64(query_, ++bound_, text.data(), text.size(), SQLITE_STATIC, SQLITE_UTF8));
    }
    void BindBytes(const std::string& bytes) {
        Note(sqlite3_bind_blob64(query_, ++bound_, bytes.data(), bytes.size(), SQLITE_STATIC));
    }

    // Moves to the next row; false at the end and after a failure.
    bool Next() {
        if (result_ != SQLITE_OK) return false;
        const int step = sqlite3_step(query_);
        if (step == SQLITE_ROW) return true;
        if (step != SQLITE_DONE) result_ = step;
        return false;
    }
    // Runs a query that delivers no rows.
    bool Finish() {
        Next();
        return result_ == SQLITE_OK;
    }
    int Result() const { return result_; }
    sqlite3_stmt* Row() const { return query_; }

  private:
    void Note(int result) {
        if (result_ == SQLITE_OK) result_ = result;
    }
    sqlite3_stmt* query_ = nullptr;
    int result_ = SQLITE_OK;
    int bound_ = 0;
};

HiveFile::~HiveFile() { Close(); }

void HiveFile::Close() {
    for (sqlite3_stmt*& query : queries_) {
        sqlite3_finalize(query);
        query = nullptr;
    }
    sqlite3_close(db_);
    db_ = nullptr;
}

KeepResult HiveFile::ResultOf(int code) const {
    // SQLite does not remember the error of every failed write.
    const int error = sqlite3_system_errno(db_) ? sqlite3_system_errno(db_) : errno;
    KeepFailure failure = KeepFailure::Failed;
    switch (code & 0xFF) {
        case SQLITE_OK:
            return {};
        case SQLITE_BUSY:
        case SQLITE_LOCKED:
            failure = KeepFailure::Locked;
            break;
        case SQLITE_FULL:
            failure = KeepFailure::DiskFull;
            break;
        case SQLITE_READONLY:
            // SQLite opens a file for reading when it may not write it, whatever the reason.
            failure = FailureOf(access(sqlite3_db_filename(db_, nullptr), W_OK) == 0 ? EACCES : errno);
            break;
        case SQLITE_PERM:
        case SQLITE_AUTH:
            failure = KeepFailure::NoAccess;
            break;
        case SQLITE_NOTADB:
        case SQLITE_CORRUPT:
            failure = KeepFailure::Damaged;
            break;
        case SQLITE_CANTOPEN:
        case SQLITE_IOERR:
            failure = FailureOf(error);
            break;
        default:
            break;
    }
    return {failure, std::string(sqlite3_errstr(code)) + (error ? std::string(": ") + strerror(error) : "")};
}

std::unique_ptr<HiveImage> HiveFile::Open(const fs::path& file, KeepResult& result) {
    if (file.empty() || !MakePrivateFolder(file.parent_path())) {
        const int error = file.empty() ? ENOENT : errno;
        result = {FailureOf(error), strerror(error)};
        return nullptr;
    }
    const FolderLock lock(file.parent_path());
    if (!lock.Held()) {
        result = {KeepFailure::Locked, "the folder is locked"};
        return nullptr;
    }
    for (int attempt = 0; attempt < 2; ++attempt) {
        MakePrivateFile(file);
        auto image = std::make_unique<HiveImage>();
        result = TryOpen(file);
        if (result.Kept()) result = ResultOf(ReadInto(*image));
        if (result.Kept()) return image;
        Close();
        if (result.failure != KeepFailure::Damaged || !MoveAside(file)) break;
    }
    return nullptr;
}

KeepResult HiveFile::TryOpen(const fs::path& file) {
    // Pages are taken one by one, so that they can be given back after reading.
    [[maybe_unused]] static const int configured = sqlite3_config(SQLITE_CONFIG_PAGECACHE, nullptr, 0, 0);
    int result = sqlite3_open_v2(file.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    if (result != SQLITE_OK) return ResultOf(result);
    sqlite3_extended_result_codes(db_, 1);
    sqlite3_busy_handler(db_, WaitForOthers, nullptr);
    std::int64_t format = 0;
    sqlite3_stmt* query = nullptr;
    result = sqlite3_prepare_v2(db_, "PRAGMA user_version", -1, &query, nullptr);
    if (result == SQLITE_OK) {
        if ((result = sqlite3_step(query)) == SQLITE_ROW) format = sqlite3_column_int64(query, 0);
        result = sqlite3_finalize(query);
    }
    if (result != SQLITE_OK) return ResultOf(result);
    if (format > kFormat) return {KeepFailure::TooNew, "user_version " + std::to_string(format)};
    if (!Execute("PRAGMA synchronous = FULL")) return ResultOf(sqlite3_extended_errcode(db_));
    return ResultOf(format == kFormat ? SQLITE_OK : CreateTables());
}

int HiveFile::CreateTables() {
    if (Execute("PRAGMA journal_mode = WAL") && Execute(kTables)) return SQLITE_OK;
    const int result = sqlite3_extended_errcode(db_);
    Rollback();
    return result;
}

bool HiveFile::Execute(const char* sql) {
    return db_ && sqlite3_exec(db_, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

std::unique_ptr<HiveImage> HiveFile::Load(KeepResult& result) {
    auto image = std::make_unique<HiveImage>();
    result = ResultOf(ReadInto(*image));
    return result.Kept() ? std::move(image) : nullptr;
}

int HiveFile::ReadInto(HiveImage& image) {
    // Keys and values have to be of one moment.
    const bool ownTransaction = sqlite3_get_autocommit(db_) != 0;
    if (ownTransaction && !Execute("BEGIN")) return sqlite3_extended_errcode(db_);
    int result = SQLITE_OK;
    {
        Run keys(*this, kReadKeys);
        while (keys.Next())
            image.LoadKey(sqlite3_column_int64(keys.Row(), 0), sqlite3_column_int64(keys.Row(), 1),
                          Bytes(keys.Row(), 2));
        Run values(*this, kReadValues);
        while (values.Next()) {
            sqlite3_stmt* const row = values.Row();
            HiveValue value{Bytes(row, 1), static_cast<std::uint32_t>(sqlite3_column_int64(row, 2)), {}};
            value.data = sqlite3_column_type(row, 3) == SQLITE_INTEGER
                             ? FromNumber(sqlite3_column_int64(row, 3))
                             : Bytes(row, 3);
            image.LoadValue(sqlite3_column_int64(row, 0), std::move(value));
        }
        Run version(*this, kDataVersion);
        if (version.Next()) dataVersion_ = sqlite3_column_int64(version.Row(), 0);
        for (const Run* run : {&keys, &values, &version})
            if (result == SQLITE_OK) result = run->Result();
    }
    if (ownTransaction) Rollback();
    sqlite3_db_release_memory(db_);  // it will hardly be read again
    return result;
}

bool HiveFile::ChangedElsewhere() {
    Run version(*this, kDataVersion);
    return !version.Next() || sqlite3_column_int64(version.Row(), 0) != dataVersion_;
}

KeepResult HiveFile::Begin() {
    return Execute("BEGIN IMMEDIATE") ? KeepResult{} : ResultOf(sqlite3_extended_errcode(db_));
}

KeepResult HiveFile::Commit(const HiveImage& image) {
    if (image.WriteChanges(*this) && Execute("COMMIT")) return {};
    const KeepResult result = ResultOf(sqlite3_extended_errcode(db_));
    Rollback();
    return result.Kept() ? KeepResult{KeepFailure::Failed, "not written"} : result;
}

void HiveFile::Rollback() {
    if (db_ && !sqlite3_get_autocommit(db_)) Execute("ROLLBACK");
}

bool HiveFile::AddKey(std::int64_t id, std::int64_t parent, const std::string& name) {
    Run run(*this, kAddKey);
    run.Bind(id);
    run.Bind(parent);
    run.Bind(name);
    return run.Finish();
}

bool HiveFile::RenameKey(std::int64_t id, const std::string& name) {
    Run run(*this, kRenameKey);
    run.Bind(id);
    run.Bind(name);
    return run.Finish();
}

bool HiveFile::RemoveKey(std::int64_t id) {
    Run values(*this, kRemoveValues);
    values.Bind(id);
    Run key(*this, kRemoveKey);
    key.Bind(id);
    return values.Finish() && key.Finish();
}

bool HiveFile::PutValue(std::int64_t key, const HiveValue& value) {
    Run run(*this, kPutValue);
    run.Bind(key);
    run.Bind(value.name);
    run.Bind(static_cast<std::int64_t>(value.type));
    if (IsNumber(value))
        run.Bind(static_cast<std::int64_t>(ToNumber(value.data)));
    else if (value.type == 1 || value.type == 2 || value.type == 7)
        run.Bind(value.data);
    else
        run.BindBytes(value.data);
    return run.Finish();
}

bool HiveFile::RemoveValue(std::int64_t key, const std::string& name) {
    Run run(*this, kRemoveValue);
    run.Bind(key);
    run.Bind(name);
    return run.Finish();
}
