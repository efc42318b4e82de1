#include <gtest/gtest.h>

#include "exchange/ExportedNote.h"
#include "tests/exchange/SampleNotes.h"

namespace {

// Where each field has its place is recorded.
TEST(ExportedNote, AnyFlagThatIsNotZeroIsSetAndWrittenInOneWay) {
    const std::string flags("\x00\x00\xFF\xFF\x01\x00\x00\x01", 8);
    std::string bytes = FileBytes({{.Text = L"a", .Left = -1, .Top = INT32_MIN, .Height = INT32_MAX}});
    bytes.replace(bytes.size() - flags.size(), flags.size(), flags + "rest");
    ByteSource file = ByteSource::OfMemory(bytes);
    const ExportedNote note = ExportReader(file).Next();
    EXPECT_EQ(file.ReadRest(), "rest") << "the record ends behind its last flag";
    EXPECT_TRUE(!note.FontNoteBold && note.FontNoteItalic && note.FontNoteUnderlined && note.Foreground);
    EXPECT_EQ(std::tuple(note.Left, note.Top, note.Height), std::tuple(-1, INT32_MIN, INT32_MAX));
    EXPECT_TRUE(FileBytes({note}).ends_with(std::string(2, '\0') + std::string(6, '\xFF')));
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
    EXPECT_TRUE(RecordsOf("").empty());
    for (std::size_t length = 2; length < whole.size() - 1; ++length) {
        const std::vector<ExportedNote> read = RecordsOf(whole.substr(0, length));
        ASSERT_EQ(read.size(), 1u) << length;
        const std::size_t there = std::min(length - 2, note.Text.size());
        EXPECT_EQ(read[0].Text, note.Text.substr(0, there) + std::wstring(note.Text.size() - there, L'\0'));
        EXPECT_FALSE(read[0].Foreground) << length;
    }
    EXPECT_EQ(RecordsOf(whole), std::vector<ExportedNote>{note});
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
