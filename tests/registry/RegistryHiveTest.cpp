// The hive file: what lies in it, who may read it, and what happens when it is damaged or cannot be used.
#include <sys/stat.h>

#include "base/FileName.h"
#include "model/ReceiveSetting.h"
#include "registry/RegistryHealth.h"
#include "registry/RegistryHive.h"
#include "tests/registry/HiveFolder.h"
#include "tests/support/SmallDisk_unix.h"

namespace {

namespace fs = std::filesystem;

const std::wstring kText = kStore + L"Note0\\Text";

void Write(const std::wstring& text) { Registry().SetValue(kText, REG_TYPE_SZ, text); }
std::wstring Read() { return AsText(Registry().GetValue(kText, REG_TYPE_SZ)); }

int Rights(const fs::path& path) {
    struct stat status {};
    stat(path.c_str(), &status);
    return status.st_mode & 0777;
}

TEST(RegistryHive, AnyoneCanReadTheFileAsDocumented) {
    const HiveFolder hive;
    Write(L"Käse\r\nzweite Zeile");
    Registry().SetValue(kStore + L"Note0\\X", REG_TYPE_DWORD, -1500);
    Registry().SetValue(kStore + L"Note0\\CreationTime", REG_TYPE_SZ, L"4 Uh");
    Registry().CreateKey(L"HKCU\\Leer");
    const std::pair<const char*, const char*> cases[] = {
        {"SELECT data FROM registry WHERE path = 'HKLM\\Software\\Kivora\\1.5\\Note0' AND name = 'Text'",
         "Käse\r\nzweite Zeile"},
        {"SELECT type || ' ' || data FROM key_value WHERE name = 'X'", "4 -1500"},
        {"SELECT data FROM key_value WHERE name = 'CreationTime'", "4 Uh"},
        {"SELECT path FROM registry WHERE path LIKE 'HKCU%' AND name IS NULL AND path <> 'HKCU'",
         "HKCU\\Leer"},
        {"SELECT name FROM registry_key WHERE parent = 2", "Software"},
        {"PRAGMA journal_mode", "wal"},
    };
    for (const auto& [sql, answer] : cases) EXPECT_EQ(hive.Sql(sql), answer) << sql;

    // And change it: the program sees that at once.
    hive.Sql(
        "UPDATE key_value SET data = 'Brot' WHERE name = 'Text'; UPDATE key_value SET data = 7 WHERE name = "
        "'X'");
    EXPECT_EQ(Read(), L"Brot");
    EXPECT_EQ(AsNumber(Registry().GetValue(kStore + L"Note0\\X", REG_TYPE_DWORD)), 7);
}

TEST(RegistryHive, KeepsEverythingForTheUserAlone) {
    const HiveFolder hive;
    fs::create_directories(hive.Folder());
    fs::permissions(hive.Folder(), fs::perms(0750));
    { std::ofstream file(hive.File()); }
    fs::permissions(hive.File(), fs::perms(0664));
    Write(L"privat");
    EXPECT_TRUE(KeepState().Kept());
    EXPECT_EQ(Rights(hive.Folder()), 0700);
    for (const auto& entry : fs::directory_iterator(hive.Folder())) EXPECT_EQ(Rights(entry), 0600) << entry;
}

TEST(RegistryHive, SpellingsOfNames) {
    const HiveFolder hive;
    Write(L"a");
    Registry().SetValue(kStore + L"NOTE0\\TEXT", REG_TYPE_SZ, L"b");
    Hive().Close();
    EXPECT_EQ(Read(), L"b");
    EXPECT_EQ(hive.Sql("SELECT group_concat(name) FROM key_value"), "Text") << "the first spelling stays";
    {
        RegistryTransaction image;
        Registry().DeleteKey(kStore + L"Note0");
        Registry().SetValue(kStore + L"NOTE0\\TEXT", REG_TYPE_SZ, L"b");
        image.Commit();
    }
    Hive().Close();
    EXPECT_EQ(Read(), L"b");
    EXPECT_EQ(hive.Sql("SELECT group_concat(name) FROM key_value"), "TEXT") << "until it was deleted";
    EXPECT_EQ(hive.Sql("SELECT name FROM registry_key WHERE name LIKE 'note0'"), "NOTE0");
}

TEST(RegistryHive, RowsThatMakeNoSenseAreLeftOut) {
    const HiveFolder hive;
    Write(L"gut");
    Hive().Close();
    hive.Sql(
        "INSERT INTO registry_key SELECT 900, parent, 'nOTE0' FROM registry_key WHERE name = 'Note0';"
        "INSERT INTO registry_key VALUES(901, 999, 'no parent'), (902, 903, 'round'), (903, 902, 'about'),"
        "  (904, 904, 'itself'), (905, 2, ''), (906, 2, 'a\\b'),"
        "  (907, 2, replace(hex(zeroblob(128)), '0', 'n'));"
        "WITH RECURSIVE deep(id) AS (SELECT 1000 UNION ALL SELECT id + 1 FROM deep WHERE id < 2000)"
        "  INSERT INTO registry_key SELECT id, iif(id = 1000, 1, id - 1), 'deep' FROM deep;"
        "INSERT INTO key_value VALUES(900, 'Text', 1, 'doppelt'), (999, 'x', 1, 'y');"
        "INSERT INTO key_value SELECT id, 'TEXT', 1, 'doppelt' FROM registry_key WHERE id < 900 AND name = "
        "'Note0'");
    std::vector<std::wstring> names;
    EXPECT_EQ(Registry().EnumKeys(L"HKLM", names), 1);
    EXPECT_EQ(Registry().EnumKeys(kStore, names), 1);
    std::wstring deepest = L"HKCU";
    for (int depth = 0; depth < HiveImage::kDeepestKey; ++depth) deepest += L"\\deep";
    EXPECT_TRUE(Registry().KeyExists(deepest) && !Registry().KeyExists(deepest + L"\\deep"));
    SaveImage(3, 5);
    Hive().Close();
    EXPECT_EQ(MarkOfImage(3), 5);
}

TEST(RegistryHive, TransactionsAreKeptWholeOrNotAtAll) {
    const struct {
        bool inner, outer;  // which is committed
        const wchar_t* kept;
    } rows[] = {{true, false, L"alt"}, {false, true, L"alt"}, {true, true, L"neu"}};
    const HiveFolder hive;
    Write(L"alt");
    for (const auto& row : rows) {
        {
            RegistryTransaction outer;
            Registry().DeleteKey(kStore);
            {
                RegistryTransaction inner;
                Write(L"neu");
                EXPECT_TRUE(!row.inner || inner.Commit().Kept());
            }
            EXPECT_EQ(Read(), L"neu") << "visible inside";
            EXPECT_TRUE(!row.outer || outer.Commit().Kept() == row.inner);
        }
        EXPECT_EQ(Read(), row.kept);
        Hive().Close();
        EXPECT_EQ(Read(), row.kept) << "from the file";
    }
}

TEST(RegistryHive, SavingTheSameAgainWritesNothing) {
    const HiveFolder hive;
    SaveImage(50, 1);
    const fs::path log = hive.File().string() + "-wal";
    const std::string before = Content(hive.File()) + Content(log);
    SaveImage(50, 1);
    EXPECT_EQ(Content(hive.File()) + Content(log), before);
    SaveImage(49, 1);
    EXPECT_NE(Content(hive.File()) + Content(log), before);
}

// For now, or for good; what is there is shown where it can be read, and nothing is written.
TEST(RegistryHive, AHiveThatCannotBeUsedIsNotAnEmptyOne) {
    const struct {
        const char* what;
        void (*spoil)(const HiveFolder&);
        void (*mend)(const HiveFolder&);
        KeepFailure failure;
        bool isReadable;
    } cases[] = {
        {"a folder in its place",
         [](const HiveFolder& hive) {
             fs::rename(hive.File(), hive.File().string() + "-weg");
             fs::create_directories(hive.File() / "x");
         },
         [](const HiveFolder& hive) {
             fs::remove_all(hive.File());
             fs::rename(hive.File().string() + "-weg", hive.File());
         },
         KeepFailure::NoFile, false},
        {"a link to nowhere",
         [](const HiveFolder& hive) {
             fs::rename(hive.File(), hive.File().string() + "-weg");
             fs::create_symlink("nirgends", hive.File());
         },
         [](const HiveFolder& hive) { fs::rename(hive.File().string() + "-weg", hive.File()); },
         KeepFailure::DeadLink, false},
        {"on a disk that gives nothing",
         [](const HiveFolder& hive) {
             fs::rename(hive.File(), hive.File().string() + "-weg");
             std::ofstream(hive.File()) << "keine Datenbank";
             fs::create_symlink("registry.sqlite-wal", hive.File().string() + "-wal");
         },
         [](const HiveFolder& hive) {
             fs::remove(hive.File().string() + "-wal");
             fs::rename(hive.File().string() + "-weg", hive.File());
         },
         KeepFailure::BadDisk, false},
        {"a later version's", [](const HiveFolder& hive) { hive.Sql("PRAGMA user_version = 99"); },
         [](const HiveFolder& hive) { hive.Sql("PRAGMA user_version = 1"); }, KeepFailure::TooNew, true},
        {"held by another program",
         [](const HiveFolder& hive) {
             hive.Hold(
                 "PRAGMA journal_mode = DELETE; PRAGMA page_size = 65536; VACUUM;"
                 "PRAGMA locking_mode = EXCLUSIVE; BEGIN EXCLUSIVE");
         },
         [](const HiveFolder& hive) { hive.Hold(nullptr); }, KeepFailure::Locked, true},
        {"being opened by another program, the text in the log",
         [](const HiveFolder& hive) {
             hive.Sql("UPDATE key_value SET data = 'vorher'");
             hive.Hold("UPDATE key_value SET data = 'alt'");
             hive.HoldLock(true);
         },
         [](const HiveFolder& hive) {
             hive.HoldLock(false);
             hive.Hold(nullptr);
         },
         KeepFailure::Locked, true},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        const HiveFolder hive;
        Write(L"alt");
        Hive().Close();
        row.spoil(hive);
        const std::string before = Content(hive.File());
        EXPECT_EQ(HealthOfRegistry().reading.Kept(), row.isReadable);
        EXPECT_EQ(HealthOfRegistry().writing.failure, row.failure);
        EXPECT_EQ(FilePath(HealthOfRegistry().writing.file), hive.File());
        EXPECT_EQ(Read(), row.isReadable ? L"alt" : L"");
        EXPECT_EQ(ReadReceiveFrom(), row.isReadable ? ReceiveFrom::All : ReceiveFrom::None);
        EXPECT_EQ(SaveImage(2, 1).failure, row.failure);
        EXPECT_EQ(Read(), row.isReadable ? L"alt" : L"");
        EXPECT_TRUE(Content(hive.File()) == before);
        EXPECT_TRUE(Defective(hive).empty());
        row.mend(hive);
        if (!row.isReadable) {
            EXPECT_FALSE(SaveImage(2, 1).Kept()) << "nothing is written over what was never read";
            EXPECT_TRUE(ReadRegistryAgain().Kept());
        }
        EXPECT_EQ(Read(), L"alt");
        EXPECT_TRUE(SaveImage(2, 1).Kept());
        EXPECT_TRUE(HealthOfRegistry().reading.Kept() && HealthOfRegistry().writing.Kept());
        EXPECT_FALSE(TakeRecoveryReport());
        Hive().Close();
        EXPECT_EQ(MarkOfImage(2), 1);
    }
}

TEST(RegistryHive, AFullDiskHasTheRoomOfTheLog) {
    const HiveFolder hive;
    const fs::path log = hive.File().string() + "-wal";
    int mark = 0;
    while (!fs::exists(log) || fs::file_size(log) < 400'000) ASSERT_TRUE(SaveImage(10, ++mark).Kept());
    ASSERT_LT(fs::file_size(hive.File()), fs::file_size(log));
    KeepResult kept, tooMuch;
    {
        const SmallDisk full(fs::file_size(log));
        kept = SaveImage(10, ++mark);
        tooMuch = SaveImage(2'000, mark + 1);
    }
    EXPECT_TRUE(kept.Kept()) << kept.detail;
    EXPECT_EQ(tooMuch.failure, KeepFailure::DiskFull);
    Hive().Close();
    EXPECT_EQ(MarkOfImage(10), mark);
}

TEST(RegistryHive, TheLogBeginsAnewBehindAKeptState) {
    const HiveFolder hive;
    const fs::path log = hive.File().string() + "-wal";
    for (int mark = 1; mark <= 5; ++mark) {
        ASSERT_TRUE(SaveImage(10, mark).Kept());
        const auto size = fs::file_size(log);
        ASSERT_TRUE(Hive().KeepState().Kept());
        ASSERT_TRUE(SaveImage(10, -mark).Kept());
        EXPECT_EQ(fs::file_size(log), size);
        ASSERT_TRUE(Hive().KeepState().Kept());
    }
    Hive().Close();
    EXPECT_EQ(MarkOfImage(10), -5);
}

TEST(RegistryHive, AnotherProgramsWritingHoldsNobodyUpForLong) {
    const HiveFolder hive;
    SaveImage(2, 1);
    hive.Hold("BEGIN IMMEDIATE");
    EXPECT_EQ(SaveImage(2, 2).failure, KeepFailure::Locked);
    EXPECT_EQ(MarkOfImage(2), 1) << "what the file holds";
    EXPECT_EQ(HealthOfRegistry().writing.failure, KeepFailure::Locked);
    hive.Hold(nullptr);
    EXPECT_TRUE(SaveImage(2, 2).Kept());
    EXPECT_TRUE(HealthOfRegistry().writing.Kept());
}

TEST(RegistryHive, WhatWasRemovedOrExchangedIsWrittenAnew) {
    const struct {
        const char* what;
        void (*change)(const HiveFolder&);
        bool isSetAside;
    } cases[] = {
        {"the folder", [](const HiveFolder& hive) { fs::remove_all(hive.Folder()); }, false},
        {"the file", [](const HiveFolder& hive) { fs::remove(hive.File()); }, true},
        {"the log", [](const HiveFolder& hive) { fs::remove(hive.File().string() + "-wal"); }, true},
        {"another in its place",
         [](const HiveFolder& hive) {
             const fs::path other = hive.File().string() + "-andere";
             fs::copy_file(hive.File(), other);
             fs::rename(other, hive.File());
         },
         true},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        const HiveFolder hive;
        SaveImage(20, 1);
        row.change(hive);
        EXPECT_TRUE(SaveImage(20, 2).Kept());
        const auto report = TakeRecoveryReport();
        ASSERT_TRUE(report);
        EXPECT_EQ(report->event, RecoveryReport::Replaced);
        EXPECT_EQ(!report->setAside.empty(), row.isSetAside);
        EXPECT_EQ(
            hive.Sql("SELECT count(*) FROM registry_key WHERE id NOT IN (SELECT key FROM key_checksum)"),
            "0");
        EXPECT_TRUE(SaveImage(20, 3).Kept());
        EXPECT_FALSE(TakeRecoveryReport());
        Hive().Close();
        EXPECT_EQ(MarkOfImage(20), 3);
    }
}

TEST(RegistryHive, ALinkLeadsToTheFile) {
    const HiveFolder hive;
    SaveImage(2, 1);
    Hive().Close();
    const fs::path real = hive.Folder().parent_path() / "anderswo.sqlite";
    fs::rename(hive.File(), real);
    fs::create_symlink(real, hive.File());
    fs::permissions(real, fs::perms(0640));
    EXPECT_EQ(MarkOfImage(2), 1);
    EXPECT_EQ(Rights(real), 0600);
    Hive().Close();
    std::ofstream(real, std::ios::binary | std::ios::trunc) << "keine Datenbank";
    EXPECT_TRUE(SaveImage(2, 2).Kept());
    EXPECT_TRUE(fs::is_symlink(hive.File()));
    const auto report = TakeRecoveryReport();
    ASSERT_TRUE(report);
    EXPECT_TRUE(Content(FilePath(report->setAside)) == "keine Datenbank");
    Hive().Close();
    EXPECT_EQ(MarkOfImage(2), 2);
}

TEST(RegistryHive, AnOlderProgramsHiveIsReadAndMayBeChangedByIt) {
    const HiveFolder hive;
    SaveImage(5, 1);
    Hive().Close();
    hive.Sql(
        "DROP TABLE key_checksum; DROP TRIGGER key_added; DROP TRIGGER key_changed;"
        "DROP TRIGGER key_removed; DROP TRIGGER value_added; DROP TRIGGER value_changed;"
        "DROP TRIGGER value_removed");
    EXPECT_EQ(MarkOfImage(5), 1);
    EXPECT_FALSE(TakeRecoveryReport());
    EXPECT_EQ(hive.Sql("SELECT count(*) > 10 FROM key_checksum"), "1");
    Hive().Close();
    // As one that knows no checksums writes.
    hive.Sql(
        "UPDATE key_value SET data = 7 WHERE name = 'X' AND key IN"
        "  (SELECT id FROM registry_key WHERE name = 'Note4');"
        "DELETE FROM key_value WHERE name = 'Autostart';"
        "INSERT INTO key_value SELECT id, 'Neu', 4, 9 FROM registry_key WHERE name = 'Note3'");
    EXPECT_EQ(AsNumber(Registry().GetValue(kStore + L"Note3\\Neu", REG_TYPE_DWORD)), 9);
    EXPECT_EQ(AsNumber(Registry().GetValue(kStore + L"Note4\\X", REG_TYPE_DWORD)), 7);
    EXPECT_FALSE(TakeRecoveryReport());
    EXPECT_TRUE(SaveImage(5, 2).Kept());
    Hive().Close();
    EXPECT_EQ(MarkOfImage(5), 2);
    EXPECT_FALSE(TakeRecoveryReport());
}

}  // namespace
