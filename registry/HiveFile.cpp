#include "registry/HiveFile.h"

#include <sqlite3.h>

#include <cstdlib>
#include <string>

#include "registry/HiveSeal.h"

namespace fs = std::filesystem;

namespace {

constexpr std::int64_t kFormat = 1;  // in user_version

constexpr const char* kTables = R"(
CREATE TABLE registry_key(
    id INTEGER PRIMARY KEY,
    parent INTEGER REFERENCES registry_key(id),
    name TEXT NOT NULL);
CREATE TABLE key_value(
    key INTEGER NOT NULL REFERENCES registry_key(id),
    name TEXT NOT NULL,
    type INTEGER NOT NULL,
    data,
    PRIMARY KEY(key, name)) WITHOUT ROWID;
CREATE VIEW registry AS
    WITH RECURSIVE place(id, path) AS (
        SELECT id, name FROM registry_key WHERE parent IS NULL
        UNION ALL
        SELECT k.id, p.path || '\' || k.name FROM registry_key k JOIN place p ON k.parent = p.id)
    SELECT path, name, type, data FROM place LEFT JOIN key_value ON key = place.id;
INSERT INTO registry_key VALUES
    (0, NULL, 'HKCR'), (1, NULL, 'HKCU'), (2, NULL, 'HKLM'), (3, NULL, 'HKU'), (4, NULL, 'HKPD'),
    (5, NULL, 'HKCC'), (6, NULL, 'HKDD');
PRAGMA user_version = 1;
)";

// Whoever changes a row takes the checksum away, and with it the total: an older program or the sqlite3 shell
// knows nothing of either.
constexpr const char* kChecksums = R"(
CREATE TABLE IF NOT EXISTS key_checksum(key INTEGER PRIMARY KEY, checksum INTEGER NOT NULL);
CREATE TRIGGER IF NOT EXISTS key_added AFTER INSERT ON registry_key
    BEGIN DELETE FROM key_checksum WHERE key IN (NEW.id, -1); END;
CREATE TRIGGER IF NOT EXISTS key_changed AFTER UPDATE ON registry_key
    BEGIN DELETE FROM key_checksum WHERE key IN (OLD.id, NEW.id, -1); END;
CREATE TRIGGER IF NOT EXISTS key_removed AFTER DELETE ON registry_key
    BEGIN DELETE FROM key_checksum WHERE key IN (OLD.id, -1); END;
CREATE TRIGGER IF NOT EXISTS value_added AFTER INSERT ON key_value
    BEGIN DELETE FROM key_checksum WHERE key IN (NEW.key, -1); END;
CREATE TRIGGER IF NOT EXISTS value_changed AFTER UPDATE ON key_value
    BEGIN DELETE FROM key_checksum WHERE key IN (OLD.key, NEW.key, -1); END;
CREATE TRIGGER IF NOT EXISTS value_removed AFTER DELETE ON key_value
    BEGIN DELETE FROM key_checksum WHERE key IN (OLD.key, -1); END;
)";

// Numbers of 32 bits are numbers in the file too.
bool IsNumber(const HiveValue& value) { return value.type == 4 && value.data.size() == 4; }

std::int32_t ToNumber(const std::string& data) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;) number = number << 8 | static_cast<unsigned char>(data[i]);
    return static_cast<std::int32_t>(number);
}

}  // namespace

std::string RegistryBytes(std::int64_t number) {
    std::string data;
    for (int shift = 0; shift < 32; shift += 8) data += static_cast<char>(number >> shift & 0xFF);
    return data;
}

// One use of one of the queries.
class HiveFile::Run : public HiveQuery {
  public:
    Run(HiveFile& file, Query which) : HiveQuery(file.database_, file.queries_[which], kTexts[which]) {}

  private:
    static constexpr const char* kTexts[kQueries] = {
        "PRAGMA data_version",
        "SELECT id, parent, name FROM registry_key WHERE parent IS NOT NULL ORDER BY id",
        "SELECT key, name, type, data FROM key_value",
        "SELECT key, checksum FROM key_checksum",
        "INSERT INTO registry_key VALUES(?, ?, ?)",
        "UPDATE registry_key SET name = ?2 WHERE id = ?1",
        "DELETE FROM registry_key WHERE id = ?",
        "DELETE FROM key_value WHERE key = ?",
        "INSERT OR REPLACE INTO key_value VALUES(?, ?, ?, ?)",
        "DELETE FROM key_value WHERE key = ? AND name = ?",
        "INSERT OR REPLACE INTO key_checksum VALUES(?, ?)"};
};

void HiveFile::Close() {
    for (sqlite3_stmt*& query : queries_) {
        sqlite3_finalize(query);
        query = nullptr;
    }
    database_.Close();
}

KeepResult HiveFile::Make(const fs::path& file, HiveImage& image) {
    KeepResult result = MakeEmptyFile(file);
    if (!result.Kept()) return result;
    HiveFile made;
    result = made.database_.Open(file);
    // Nobody sees the file before it is finished, and its journal never needs a name.
    for (const char* sql :
         {"PRAGMA journal_mode = MEMORY", "PRAGMA synchronous = OFF", "BEGIN", kTables, kChecksums})
        if (result.Kept()) result = made.database_.Execute(sql);
    image.ForgetFile();
    if (result.Kept()) result = made.Commit(image);
    if (result.Kept()) result = made.database_.Execute("PRAGMA journal_mode = WAL");
    made.Close();
    std::error_code ignored;
    if (!result.Kept()) fs::remove(file, ignored);
    return result;
}

KeepResult HiveFile::Open(const fs::path& file, std::unique_ptr<HiveImage>& image, HiveDeadline deadline) {
    file_ = file;
    database_.WaitUntil(deadline);
    KeepResult result = database_.Open(file);
    // What turns out to be damaged is not made worse by bringing the log into it.
    if (result.Kept()) database_.LeaveAsItIs(true);
    image = std::make_unique<HiveImage>();
    if (result.Kept()) result = CheckAndRead(*image);
    if (!result.Kept()) {
        Close();
        return result;
    }
    database_.LeaveAsItIs(false);
    identity_ = IdentityOf(file);
    logIdentity_ = IdentityOf(Beside(file, "-wal"));
    return {};
}

KeepResult HiveFile::CheckAndRead(HiveImage& image) {
    std::string answer;
    KeepResult result = database_.Ask("PRAGMA user_version", answer);
    const std::int64_t format = std::atoll(answer.c_str());
    if (result.Kept() && format > kFormat) return {KeepFailure::TooNew, "user_version " + answer};
    if (result.Kept() && format < kFormat) return {KeepFailure::Damaged, "user_version " + answer};
    if (result.Kept()) result = database_.Ask("PRAGMA integrity_check(1)", answer);
    if (result.Kept() && answer != "ok") return {KeepFailure::Damaged, answer};
    if (result.Kept())
        result = database_.Ask("SELECT count(*) FROM sqlite_master WHERE name = 'key_checksum'", answer);
    const bool hasChecksums = answer != "0";
    if (result.Kept()) result = database_.Execute("PRAGMA synchronous = FULL");
    if (!result.Kept()) return result;
    if (hasChecksums) return ReadInto(image);
    // An older program made it.
    result = database_.Execute("BEGIN IMMEDIATE");
    if (result.Kept()) result = database_.Execute(kChecksums);
    if (result.Kept()) result = ReadInto(image);
    if (result.Kept()) result = Commit(image);
    Rollback();
    return result;
}

bool HiveFile::HasMoved() const {
    return IsAnother(file_, identity_) || IsAnother(Beside(file_, "-wal"), logIdentity_);
}

KeepResult HiveFile::Load(std::unique_ptr<HiveImage>& image) {
    image = std::make_unique<HiveImage>();
    return ReadInto(*image);
}

KeepResult HiveFile::ReadInto(HiveImage& image) {
    // Keys and values have to be of one moment.
    const bool ownTransaction = !database_.InTransaction();
    KeepResult result = ownTransaction ? database_.Execute("BEGIN") : KeepResult{};
    if (!result.Kept()) return result;
    {
        Run keys(*this, kReadKeys);
        while (keys.Next()) image.LoadKey(keys.Number(0), keys.Number(1), keys.Bytes(2));
        Run values(*this, kReadValues);
        while (values.Next())
            image.LoadValue(values.Number(0),
                            {values.Bytes(1), static_cast<std::uint32_t>(values.Number(2)),
                             values.IsNumber(3) ? RegistryBytes(values.Number(3)) : values.Bytes(3)});
        Run checksums(*this, kReadChecksums);
        while (checksums.Next())
            image.LoadChecksum(checksums.Number(0), static_cast<std::uint64_t>(checksums.Number(1)));
        Run version(*this, kDataVersion);
        if (version.Next()) dataVersion_ = version.Number(0);
        for (const Run* run : {&keys, &values, &checksums, &version})
            if (result.Kept()) result = run->Result();
    }
    if (ownTransaction) Rollback();
    database_.ReleaseMemory();  // it will hardly be read again
    if (result.Kept() && !image.IsIntact()) result = {KeepFailure::Damaged, "a checksum differs"};
    return result;
}

bool HiveFile::ChangedElsewhere() {
    Run version(*this, kDataVersion);
    return !version.Next() || version.Number(0) != dataVersion_;
}

KeepResult HiveFile::Begin(HiveDeadline deadline) {
    database_.WaitUntil(deadline);
    return database_.Execute("BEGIN IMMEDIATE");
}

KeepResult HiveFile::Commit(HiveImage& image) {
    failure_ = {};
    const bool written = image.WriteChanges(*this);
    KeepResult result = written ? database_.Execute("COMMIT") : failure_;
    if (result.Kept())
        image.ChangesAreWritten();
    else
        Rollback();
    return result;
}

void HiveFile::Rollback() {
    if (database_.InTransaction()) database_.Execute("ROLLBACK");
}

bool HiveFile::RestartLog() {
    database_.WaitUntil({});
    std::string blocked;
    return database_.Ask("PRAGMA wal_checkpoint(RESTART)", blocked).Kept() && blocked == "0";
}

bool HiveFile::Noted(Run& run) {
    if (run.Finish()) return true;
    failure_ = run.Result();
    return false;
}

bool HiveFile::AddKey(std::int64_t id, std::int64_t parent, const std::string& name) {
    Run run(*this, kAddKey);
    run.Bind(id);
    run.Bind(parent);
    run.Bind(name);
    return Noted(run);
}

bool HiveFile::RenameKey(std::int64_t id, const std::string& name) {
    Run run(*this, kRenameKey);
    run.Bind(id);
    run.Bind(name);
    return Noted(run);
}

bool HiveFile::RemoveKey(std::int64_t id) {
    Run values(*this, kRemoveValues);
    values.Bind(id);
    Run key(*this, kRemoveKey);
    key.Bind(id);
    return Noted(values) && Noted(key);
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
    return Noted(run);
}

bool HiveFile::RemoveValue(std::int64_t key, const std::string& name) {
    Run run(*this, kRemoveValue);
    run.Bind(key);
    run.Bind(name);
    return Noted(run);
}

bool HiveFile::PutChecksum(std::int64_t key, std::uint64_t checksum) {
    Run run(*this, kPutChecksum);
    run.Bind(key);
    run.Bind(static_cast<std::int64_t>(checksum));
    return Noted(run);
}
