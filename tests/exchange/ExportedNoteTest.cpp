#include <gtest/gtest.h>

#include "base/Text.h"
#include "exchange/ExportedNote.h"
#include "tests/exchange/SampleNotes.h"

namespace {

std::vector<ExportedNote> NotesOf(const std::string& bytes) {
    std::vector<ExportedNote> notes;
    ByteSource file = ByteSource::OfMemory(bytes);
    ExportReader reader(file);
    for (ExportedNote note = reader.Next(); !note.Text.empty(); note = reader.Next())
        notes.push_back(std::move(note));
    return notes;
}

TEST(ExportedNote, EveryFieldHasItsPlaceAndSign) {
    const std::string bytes(
        "\x03\x00"
        "a\r\n"
        "\x02\x00\x80\x81"
        "\xFF\xFF\xFF\xFF\x00\x00\x00\x80\x04\x03\x02\x01\xFF\xFF\xFF\x7F"
        "\x00\xFF\xFF\x00\x02\x00\x00\x00\x19\x00\x00\x00"
        "\x00\x00\xFF\xFF\x01\x00\x00\x01"
        "rest",
        2 + 3 + 2 + 2 + 16 + 12 + 8 + 4);
    const ExportedNote expected{.Text = L"a\r\n",
                                .CreationTime = L"€\u0081",
                                .Left = -1,
                                .Top = INT32_MIN,
                                .Width = 0x01020304,
                                .Height = INT32_MAX,
                                .Color = 0xFFFF00,
                                .FontNoteAlignment = 2,
                                .FontNoteSize = 25,
                                .FontNoteBold = false,
                                .FontNoteItalic = true,
                                .FontNoteUnderlined = true,
                                .Foreground = true};
    ByteSource file = ByteSource::OfMemory(bytes);
    EXPECT_EQ(ExportReader(file).Next(), expected);
    EXPECT_EQ(file.ReadRest(), "rest") << "the record ends behind its last flag";
    // Flags are written in one way only.
    EXPECT_EQ(FileBytes({expected}),
              bytes.substr(0, bytes.size() - 12) + std::string("\0\0\xFF\xFF\xFF\xFF\xFF\xFF", 8));
}

TEST(ExportedNote, IsANoteAndBack) {
    std::vector<ExportedNote> records = SampleNotes();
    records.push_back({.Text = L"fremd", .Color = 0x123456, .FontNoteAlignment = 77, .FontNoteSize = 99});
    for (const ExportedNote& record : records) EXPECT_EQ(ToRecord(ToNote(record)), record);
    EXPECT_EQ(ToNote({.Text = std::wstring(L"a\0b", 3)}).text, L"a");
    // Half twips go to the even neighbour.
    const ExportedNote rounded = ToRecord({.place = {2.5, 3.5, 1500.5, 1000.51}});
    EXPECT_EQ(rounded.Left, 2);
    EXPECT_EQ(rounded.Top, 4);
    EXPECT_EQ(rounded.Width, 1500);
    EXPECT_EQ(rounded.Height, 1001);
}

TEST(ExportedNote, ReadsZerosBehindTheEnd) {
    const ExportedNote note = SampleNotes()[2];
    const std::string whole = FileBytes({note});
    EXPECT_TRUE(NotesOf("").empty());
    for (std::size_t length = 2; length < whole.size() - 1; ++length) {
        const std::vector<ExportedNote> read = NotesOf(whole.substr(0, length));
        ASSERT_EQ(read.size(), 1u) << length;
        const std::size_t there = std::min(length - 2, note.Text.size());
        EXPECT_EQ(read[0].Text, note.Text.substr(0, there) + std::wstring(note.Text.size() - there, L'\0'));
        EXPECT_FALSE(read[0].Foreground) << length;
    }
    EXPECT_EQ(NotesOf(whole), std::vector<ExportedNote>{note});
}

TEST(ExportedNote, NothingIsWrittenOfATextThatCannotBeCounted) {
    const std::wstring longest(65'535, L'x'), tooLong(65'536, L'x');
    const struct {
        const char* name;
        ExportedNote note;
        bool written;
    } rows[] = {{"longest text", {.Text = longest}, true},
                {"too long text", {.Text = tooLong}, false},
                {"longest time", {.Text = L"a", .CreationTime = longest}, true},
                {"too long time", {.Text = L"a", .CreationTime = tooLong}, false}};
    for (const auto& row : rows) {
        std::string file;
        EXPECT_EQ(WriteRecord(file, row.note), row.written) << row.name;
        EXPECT_EQ(file.empty(), !row.written) << row.name;
    }
}

}  // namespace
