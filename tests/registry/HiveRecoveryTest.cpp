// What is read without SQLite, and what is made of rows that do not fit together.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>

#include "registry/HivePages.h"
#include "registry/HivePlace.h"
#include "registry/HiveRecovery.h"
#include "tests/registry/HiveFolder.h"

namespace {

namespace fs = std::filesystem;

// The notes of an image as the program would find them.
std::set<std::string> NotesOf(HiveImage& image) {
    std::set<std::string> notes;
    if (const HiveKey* const store = image.Find(*image.Find(2), "Software\\Kivora\\1.5"))
        for (const auto& [capitals, key] : store->keys)
            if (const HiveValue* const text = HiveImage::FindValue(*key, "Text"))
                notes.insert(key->name + " " + text->data);
    return notes;
}

// Also of notes that it would not find.
auto CountTexts(const HiveImage& image) {
    return std::ranges::count_if(image.Keys(),
                                 [](const HiveKey* key) { return key->values.contains("TEXT"); });
}

TEST(HiveRecovery, RowsThatAreGoneOrWrong) {
    const HiveFolder hive;
    const auto saved = [&](int mark) {
        SaveImage(3, mark);
        Hive().Close();
        return ReadPages(hive.File());
    };
    const FoundRows older = saved(1), good = saved(2);
    const auto idOf = [&](const char* name) {
        return std::ranges::find_if(good.keys, [&](const auto& key) { return key.second.name == name; })
            ->first;
    };
    const std::int64_t note = idOf("Note1"), store = idOf("1.5");
    const struct {
        const char* what;
        std::function<void(FoundRows&)> damage;
        bool isTextThere;
        int lost;  // where no state helps
    } rows[] = {
        {"its name", [&](FoundRows& it) { it.keys[note].name = "Mote1"; }, true, 0},
        {"the next one's name", [&](FoundRows& it) { it.keys[note].name = "Note2"; }, true, 0},
        {"the key above", [&](FoundRows& it) { it.keys[note].parent = store - 1; }, true, 0},
        {"no row", [&](FoundRows& it) { it.keys.erase(note); }, true, 0},
        {"the name of the key above", [&](FoundRows& it) { it.keys[store].name = "1.6"; }, true, 0},
        {"no row above", [&](FoundRows& it) { it.keys.erase(store); }, true, 1},
        {"neither row nor checksum",
         [&](FoundRows& it) {
             it.whole = false;
             it.keys.erase(note);
             it.checksums.erase(note);
         },
         true, 0},
        {"no values", [&](FoundRows& it) { it.values.erase(note); }, false, 1},
        {"nothing but its checksum",
         [&](FoundRows& it) {
             it.keys.erase(note);
             it.values.erase(note);
         },
         false, 1},
    };
    const std::set<std::string> all = NotesOf(*good.Image()), before = NotesOf(*older.Image());
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        FoundRows found = good;
        row.damage(found);
        const auto state = good.Image(), olderState = older.Image();
        const Recovery sure = Recover(found, state.get()), doubtful = Recover(found, olderState.get()),
                       alone = Recover(found, nullptr);
        EXPECT_EQ(NotesOf(*sure.image), all);
        EXPECT_EQ(CountTexts(*sure.image), 3);
        EXPECT_EQ(sure.report.doubtful.empty(), found.whole);
        const std::set<std::string> notes = NotesOf(*doubtful.image);
        EXPECT_TRUE(row.isTextThere ? notes == all : notes.contains(*std::next(before.begin())));
        const bool isRepaired = NotesOf(*alone.image) == all;
        EXPECT_EQ(doubtful.report.doubtful.empty(), isRepaired);
        EXPECT_EQ(alone.report.lost, row.lost);
        EXPECT_EQ(row.lost == 0 && alone.report.doubtful.empty(), isRepaired);
        EXPECT_EQ(CountTexts(*alone.image), row.isTextThere ? 3 : 2);
    }
}

TEST(HivePages, OfTheLogCountsWhatWasFinishedAndIsAsItWasWritten) {
    const HiveFolder hive;
    const fs::path log = hive.File().string() + "-wal", copy = hive.Folder() / "copy";
    SaveImage(50, 1);
    const std::size_t first = fs::file_size(log);
    SaveImage(50, 2);
    const struct {
        const char* what;
        std::function<void(std::string&)> change;
        const char* mark;
    } rows[] = {
        {"nothing", [](std::string&) {}, "2"},
        {"cut", [](std::string& bytes) { bytes.resize(bytes.size() - 1); }, "1"},
        {"a page of the second save", [&](std::string& bytes) { ++bytes[first + 100]; }, "1"},
        {"not of this log", [&](std::string& bytes) { ++bytes[first + 8]; }, "1"},
        {"a page of the first save", [](std::string& bytes) { ++bytes[100]; }, ""},
        {"its header", [](std::string& bytes) { ++bytes[12]; }, ""},
    };
    for (const auto& row : rows) {
        std::string bytes = Content(log);
        row.change(bytes);
        std::ofstream(copy, std::ios::binary) << Content(hive.File());
        std::ofstream(copy.string() + "-wal", std::ios::binary) << bytes;
        const FoundRows found = ReadPages(copy);
        const auto image = found.Image();
        EXPECT_TRUE(found.whole && image->IsWhole()) << row.what;
        const std::set<std::string> notes = NotesOf(*image);
        EXPECT_EQ(notes.size(), *row.mark ? 50u : 0u) << row.what;
        for (const std::string& note : notes) EXPECT_EQ(note[note.find(' ') + 1], *row.mark) << row.what;
    }
}

// Their pages are free, and nobody may have wiped them.
TEST(HivePages, DeletedNotesDoNotComeBackFromADamagedFile) {
    const HiveFolder hive;
    SaveImage(60, 1);
    Hive().Close();
    hive.Sql(
        "BEGIN; COMMIT; PRAGMA secure_delete = 0;"
        "DELETE FROM key_value WHERE key IN (SELECT id FROM registry_key WHERE name LIKE 'Note__');"
        "DELETE FROM registry_key WHERE name LIKE 'Note__'");
    EXPECT_NE(hive.Sql("PRAGMA freelist_count"), "0");
    std::string bytes = Content(hive.File());
    bytes[20] = 1;  // as if something stood behind the rows of each page
    std::ofstream(hive.File(), std::ios::binary) << bytes;
    EXPECT_EQ(NotesOf(*Recover(ReadPages(hive.File()), nullptr).image).size(), 10u);
}

TEST(HivePlace, NothingIsSetAsideOverWhatLiesThere) {
    const HiveFolder hive;
    fs::create_directories(hive.Folder());
    for (const char* content : {"1", "2", "3"}) {
        std::ofstream(hive.File()) << content;
        fs::path aside;
        EXPECT_TRUE(SetAside(hive.File(), "defekt", aside).Kept());
        EXPECT_EQ(Content(aside), content);
        fs::remove(hive.File());
    }
    EXPECT_EQ(Defective(hive).size(), 3u);
}

}  // namespace
