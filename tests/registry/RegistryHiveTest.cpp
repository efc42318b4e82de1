// The hive file: what lies in it, who may read it, and what happens when it is damaged or cannot be used.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <set>
#include <stdexcept>

#include "registry/RegistryHive.h"
#include "tests/registry/HiveFolder.h"

namespace {

namespace fs = std::filesystem;

const std::wstring kText = kStore + L"Note0\\Text";

void Write(const std::wstring& text) { Registry().SetValue(kText, REG_TYPE_SZ, text); }
std::wstring Read() { return AsText(Registry().GetValue(kText, REG_TYPE_SZ)); }

std::string Content(const fs::path& file) {
    if (!fs::is_regular_file(file)) return {};
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// The files that were moved aside.
std::vector<fs::path> Defective(const HiveFolder& hive) {
    std::vector<fs::path> files;
    for (const auto& entry : fs::directory_iterator(hive.Folder()))
        if (entry.path().filename().string().starts_with("registry.sqlite.defekt-"))
            files.push_back(entry.path());
    return files;
}

int Rights(const fs::path& path) {
    struct stat status {};
    stat(path.c_str(), &status);
    return status.st_mode & 0777;
}

TEST(RegistryHive, AnyoneCanReadTheFileAsDocumented) {
    const HiveFolder hive;
    Write(L"Käse\r\nzweite Zeile");
    Registry().SetValue(kStore + L"Note0\\X", REG_TYPE_DWORD, -1500);
    Registry().CreateKey(L"HKCU\\Leer");
    const struct {
        const char* sql;
        const char* answer;
    } cases[] = {
        {"SELECT data FROM registry WHERE path = 'HKLM\\Software\\Kivora\\1.5\\Note0' AND name = 'Text'",
         "Käse\r\nzweite Zeile"},
        {"SELECT type || ' ' || data FROM key_value WHERE name = 'X'", "4 -1500"},
        {"SELECT path FROM registry WHERE path LIKE 'HKCU%' AND name IS NULL AND path <> 'HKCU'",
         "HKCU\\Leer"},
        {"SELECT name FROM registry_key WHERE parent = 2", "Software"},
        {"PRAGMA journal_mode", "wal"},
    };
    for (const auto& row : cases) EXPECT_EQ(hive.Sql(row.sql), row.answer) << row.sql;

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
    fs::permissions(hive.Folder(), fs::perms(0755));
    { std::ofstream file(hive.File()); }
    fs::permissions(hive.File(), fs::perms(0664));
    Write(L"privat");
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

TEST(RegistryHive, NamesAreOrderedAsCapitals) {
    const HiveFolder hive;
    for (const auto* name : {L"_x", L"Note2", L"note10"}) Registry().CreateKey(kStore + name);
    std::vector<std::wstring> names;
    Registry().EnumKeys(kStore, names);
    EXPECT_EQ(names, (std::vector<std::wstring>{L"note10", L"Note2", L"_x"}));
}

TEST(RegistryHive, RowsThatMakeNoSenseAreLeftOut) {
    const HiveFolder hive;
    Write(L"gut");
    Hive().Close();
    hive.Sql(
        "INSERT INTO registry_key SELECT 900, parent, 'nOTE0' FROM registry_key WHERE name = 'Note0';"
        "INSERT INTO registry_key VALUES(901, 999, 'no parent'), (902, 903, 'round'), (903, 902, 'about'),"
        "  (904, 904, 'itself'), (905, 2, ''), (906, 2, 'a\\b'), (907, 2, NULL || 'x');"
        "INSERT INTO registry_key VALUES(905, 2, ''), (906, 2, 'a\\b');"
        "INSERT INTO key_value VALUES(900, 'Text', 1, 'doppelt'), (999, 'x', 1, 'y');"
        "INSERT INTO key_value SELECT id, 'TEXT', 1, 'doppelt' FROM registry_key WHERE id < 900 AND name = "
        "'Note0'");
    std::vector<std::wstring> names;
    EXPECT_EQ(Registry().EnumKeys(L"HKLM", names), 1);
    EXPECT_EQ(Registry().EnumKeys(kStore, names), 1);
    SaveImage(3, 5);
    Hive().Close();
    EXPECT_EQ(MarkOfImage(3), 5);
}

// A table of whole transactions: what the image holds afterwards, here and in the file.
TEST(RegistryHive, TransactionsAreKeptWholeOrNotAtAll) {
    const struct {
        const char* what;
        void (*change)();
        const wchar_t* text;
    } cases[] = {
        {"kept",
         [] {
             RegistryTransaction image;
             Write(L"neu");
             EXPECT_TRUE(image.Commit().Kept());
         },
         L"neu"},
        {"nested",
         [] {
             RegistryTransaction outer;
             {
                 RegistryTransaction inner;
                 Write(L"neu");
                 EXPECT_TRUE(inner.Commit().Kept());
             }
             EXPECT_EQ(Read(), L"neu") << "visible inside";
             EXPECT_TRUE(outer.Commit().Kept());
         },
         L"neu"},
        {"not committed",
         [] {
             const RegistryTransaction image;
             Write(L"neu");
         },
         L"alt"},
        {"inner not committed",
         [] {
             RegistryTransaction outer;
             Write(L"neu");
             {
                 const RegistryTransaction inner;
                 Write(L"noch neuer");
             }
             EXPECT_EQ(outer.Commit().failure, KeepFailure::Failed);
         },
         L"alt"},
        {"exception",
         [] {
             RegistryTransaction image;
             Registry().DeleteKey(kStore);
             throw std::runtime_error("halfway");
         },
         L"alt"},
    };
    for (const auto& row : cases) {
        const HiveFolder hive;
        Write(L"alt");
        try {
            row.change();
        } catch (const std::runtime_error&) {
        }
        EXPECT_EQ(Read(), row.text) << row.what;
        Hive().Close();
        EXPECT_EQ(Read(), row.text) << row.what << ", from the file";
        Write(L"danach");
        EXPECT_EQ(Read(), L"danach") << row.what;
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

TEST(RegistryHive, ADamagedFileIsMovedAside) {
    const HiveFolder sound;
    SaveImage(200, 1);
    Hive().Close();
    const std::string good = Content(sound.File());
    ASSERT_GT(good.size(), 40'000u);
    const struct {
        const char* what;
        std::string bytes;
    } cases[] = {
        {"text", "das ist keine Datenbank"},
        {"much text", std::string(100'000, 'x')},
        {"zeros", std::string(8192, '\0')},
        {"cut off", good.substr(0, 20'000)},
        {"overwritten", good.substr(0, 4096) + std::string(good.size() - 4096, '\x55')},
    };
    // All in one second, and none is lost for another.
    const HiveFolder hive;
    fs::create_directories(hive.Folder());
    std::multiset<std::string> aside;
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        for (const char* end : {"-wal", "-shm"}) fs::remove(hive.File().string() + end);
        std::ofstream(hive.File(), std::ios::binary | std::ios::trunc) << row.bytes;
        EXPECT_EQ(Registry().KeyExists(kStore), false);
        Write(L"neu");
        Hive().Close();
        EXPECT_EQ(Read(), L"neu");
        Hive().Close();
        aside.insert(row.bytes);
        std::multiset<std::string> found;
        for (const fs::path& file : Defective(hive)) found.insert(Content(file));
        EXPECT_TRUE(found == aside);
    }
}

// What could not be read must not be overwritten with an empty image.
TEST(RegistryHive, AHiveThatCannotBeReadRefusesChanges) {
    const struct {
        const char* what;
        void (*spoil)(const HiveFolder&);
    } cases[] = {
        {"a folder in its place", [](const HiveFolder& hive) { fs::create_directories(hive.File() / "x"); }},
        {"a later version's",
         [](const HiveFolder& hive) {
             Write(L"alt");
             Hive().Close();
             hive.Sql("PRAGMA user_version = 99");
         }},
        {"its folder is a file", [](const HiveFolder& hive) { std::ofstream file(hive.Folder()); }},
        {"other tables",
         [](const HiveFolder& hive) {
             fs::create_directories(hive.Folder());
             hive.Sql("CREATE TABLE key_value(something); PRAGMA user_version = 1");
         }},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.what);
        const HiveFolder hive;
        row.spoil(hive);
        const std::string before = Content(hive.File());
        EXPECT_FALSE(Registry().KeyExists(kStore));
        EXPECT_TRUE(Registry().KeyExists(L"HKLM"));
        EXPECT_FALSE(SaveImage(2, 1).Kept());
        Write(L"neu");
        EXPECT_EQ(Read(), L"");
        EXPECT_EQ(Content(hive.File()), before);
        if (fs::is_directory(hive.Folder())) {
            EXPECT_TRUE(Defective(hive).empty());
        }
    }
}

}  // namespace
