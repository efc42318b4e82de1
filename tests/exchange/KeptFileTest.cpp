#include <gtest/gtest.h>

#include <limits>

#include "base/Text.h"
#include "exchange/KeptFile.h"
#include "tests/exchange/SampleNotes.h"

namespace {

using Notes = std::vector<Note>;

Note Sample(std::wstring text) {
    return {.text = std::move(text),
            .creationTime = L"21.11.2026, 09:15:00 Ω",
            .look = {.size = 99, .bold = true, .underlined = true, .alignment = -7, .color = 0x123456},
            .place = {-30.5, 45, 3000.25, 2'000'000},
            .foreground = true};
}

std::optional<Notes> Exact(const std::string& bytes) {
    ByteSource file = ByteSource::OfMemory(bytes);
    return ExactNotes(file);
}

Notes Read(const std::string& bytes) {
    ByteSource file = ByteSource::OfMemory(bytes);
    return NotesOfKeptFile(file);
}

// What a reader sees that knows nothing of appendices.
Notes RecordedNotes(const std::string& bytes) {
    Notes notes;
    for (const ExportedNote& record : RecordsOf(bytes)) notes.push_back(ToNote(record));
    return notes;
}

Note InCodePage(Note note) {
    note = ToNote(ToRecord(note));
    for (std::wstring* text : {&note.text, &note.creationTime}) *text = FromAnsi(ToAnsi(*text));
    return note;
}

}  // namespace

TEST(KeptFile, NotesComeBackExactly) {
    const struct {
        const char* name;
        std::vector<std::wstring> texts;
        std::size_t records;
    } rows[] = {
        {"none", {}, 0},
        {"umlauts", {L"Käse\r\nund Brot €"}, 1},
        {"beyond the code page", {L"Ω 漢字", L"\U0001F600 ja", L"\uFFFD"}, 3},
        {"empty text between others", {L"a", L"", L"b"}, 2},
        {"only an empty text", {L""}, 0},
        {"NUL", {std::wstring(L"a\0b", 3), std::wstring(1, L'\0')}, 2},
        {"lone line breaks", {L"a\nb\rc\r\n", L"\r\n"}, 2},
        {"longer than a record",
         {std::wstring(200'000, L'x'), std::wstring(200'000, L'Ω'), L"kurz"},
         4 + 4 + 1},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        Notes notes;
        for (const std::wstring& text : row.texts) notes.push_back(Sample(text));
        const std::string bytes = KeptFileBytes(notes);
        EXPECT_EQ(Exact(bytes), notes);
        EXPECT_EQ(Exact(bytes + "anything"), notes) << "over a longer file";
        EXPECT_EQ(RecordedNotes(bytes).size(), row.records);
    }
}

TEST(KeptFile, OtherReadersSeeAnExportFile) {
    const Note note = Sample(L"Käse Ω\r\n\U0001F600");
    EXPECT_EQ(RecordedNotes(KeptFileBytes({note, note})), (Notes{InCodePage(note), InCodePage(note)}));
    // A long text is broken at the ends of lines.
    const std::wstring line = std::wstring(40'000, L'x');
    const Notes pieces = RecordedNotes(KeptFileBytes({Sample(line + L"\r\n" + line)}));
    ASSERT_EQ(pieces.size(), 2u);
    for (const Note& piece : pieces) EXPECT_EQ(piece.text, line);
}

TEST(KeptFile, NothingAlteredIsTakenForExact) {
    const Notes notes{Sample(L"Milch Ω"), Sample(L""), Sample(L"Brot")};
    const std::string bytes = KeptFileBytes(notes);
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_EQ(Exact(bytes.substr(0, length)), std::nullopt) << length;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        for (const char change : {'\x01', '\x80', '\xFF'}) {
            std::string altered = bytes;
            altered[at] = static_cast<char>(altered[at] ^ change);
            EXPECT_EQ(Exact(altered), std::nullopt) << at;
        }
    }
    EXPECT_EQ(Read(bytes), notes);
    EXPECT_EQ(Read(bytes.substr(0, bytes.size() - 1)), RecordedNotes(bytes));
}

TEST(KeptFile, PlacesThatNoRecordCanNameAreNotTaken) {
    Note note = Sample(L"a");
    note.place = {1e300, -1e300, std::numeric_limits<double>::quiet_NaN(), 100};
    const std::optional<Notes> read = Exact(KeptFileBytes({note}));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->at(0).place, (NotePlace{0, 0, 0, 100}));
}
