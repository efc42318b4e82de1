#include <gtest/gtest.h>

#include <fstream>

#include "base/DataFolder.h"
#include "base/Text.h"
#include "exchange/ExportedNote.h"
#include "exchange/ImportFile.h"
#include "exchange/KeptFile.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::wstring>;

class ImportFileTest : public testing::Test {
  protected:
    ImportFileTest() {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }

    fs::path Write(const std::string& bytes, const char* name = "a.kvr") const {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return folder / name;
    }
    // All notes of the file.
    static ReadNotes Read(const fs::path& path) {
        return ReadNotesOf(path, kMostRecords, [](std::size_t) { return true; });
    }

    const fs::path folder = SharedDataFolder() / "kivora import ü test";
};

}  // namespace

TEST_F(ImportFileTest, OnlyFilesAreOpened) {
    for (const fs::path& path : {folder, folder / "fehlt.kvr", folder / "fehlt" / "a.kvr", fs::path()}) {
        EXPECT_TRUE(ByteSource::OfFile(path).Failure()) << path;
        EXPECT_TRUE(ListNotes(path).empty()) << path;
        EXPECT_FALSE(NoteAt(path, 0)) << path;
        EXPECT_FALSE(Read(path).complete) << path;
    }
    EXPECT_FALSE(fs::exists(folder / "fehlt.kvr"));
}

TEST_F(ImportFileTest, NoMoreThanTheLimitIsListed) {
    std::string ones;  // the smallest records, more than anybody has
    for (std::size_t i = 0; i < kMostRecords + 1000; ++i) WriteRecord(ones, {.Text = L"1"});
    EXPECT_EQ(ListNotes(Write(ones)).size(), kMostRecords);
}

TEST_F(ImportFileTest, TextFilesAreOneNote) {
    const struct {
        const char* name;
        std::string bytes;
        std::wstring text;
    } rows[] = {
        {"UTF-8", "Käse\r\nund \xF0\x9F\x98\x80", L"Käse\r\nund \U0001F600"},
        {"with a mark", "\xEF\xBB\xBFKäse", L"Käse"},
        {"only a mark", "\xEF\xBB\xBF", L""},
        {"U+FFFD itself", "\xEF\xBF\xBD", L"\uFFFD"},
        {"Windows-1252", "K\xE4se 5 \x80", L"Käse 5 €"},
        {"broken off", "K\xC3", L"KÃ"},
        {"line breaks", "a\nb\rc\r\nd\n", L"a\r\nb\r\nc\r\nd"},
        {"NUL", std::string("a\0b", 3), L"a b"},
    };
    for (const auto& row : rows) {
        const ReadNotes read = Read(Write(row.bytes, "a.Txt"));
        EXPECT_TRUE(read.complete) << row.name;
        ASSERT_EQ(read.notes.size(), 1u) << row.name;
        EXPECT_EQ(read.notes[0].text, row.text) << row.name;
        EXPECT_EQ(read.notes[0].look, NoteLook()) << row.name;
        EXPECT_FALSE(read.notes[0].creationTime.empty()) << row.name;
        EXPECT_EQ(ListNotes(folder / "a.Txt"), Texts{Flattened(row.text)}) << row.name;
    }
    EXPECT_TRUE(Read(Write("", "a.Txt")).complete);
    EXPECT_TRUE(ListNotes(folder / "a.Txt").empty());
    Write(std::string(kMostTextFileBytes + 1, 'x'), "a.Txt");
    EXPECT_FALSE(Read(folder / "a.Txt").complete);
    EXPECT_TRUE(ListNotes(folder / "a.Txt").empty());
}

TEST_F(ImportFileTest, KeptFilesAreReadExactly) {
    const std::vector<Note> notes{{.text = L"Ω\r\n\U0001F600"}, {.text = std::wstring(70'000, L'x')}};
    const fs::path path = Write(KeptFileBytes(notes));
    EXPECT_EQ(Read(path).notes, notes);
    EXPECT_EQ(ListNotes(path), (Texts{L"Ω \U0001F600", std::wstring(kListedCharacters, L'x')}));
    EXPECT_EQ(NoteAt(path, 1), notes[1]);
    EXPECT_EQ(NoteAt(path, 2), std::nullopt);
    const ReadNotes many =
        Read(Write(KeptFileBytes(std::vector<Note>(kMostImportedNotes + 1, {.text = L"1"}))));
    EXPECT_TRUE(many.notes.empty() && !many.complete);
    Write(KeptFileBytes(notes));
    EXPECT_EQ(ReadNotesOf(path, 2, [](std::size_t i) { return i == 1; }).notes, std::vector<Note>{notes[1]});
}
