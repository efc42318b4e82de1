#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "base/Text.h"
#include "exchange/ExportedNote.h"
#include "tests/exchange/SampleNotes.h"

namespace {

namespace fs = std::filesystem;

const fs::path kSamples = KIVORA_SAMPLES;

std::vector<ExportedNote> NotesOf(ByteSource file) {
    std::vector<ExportedNote> notes;
    ExportReader reader(file);
    for (ExportedNote note = reader.Next(); !note.Text.empty(); note = reader.Next())
        notes.push_back(std::move(note));
    return notes;
}

std::vector<ExportedNote> NotesOf(const std::string& bytes) { return NotesOf(ByteSource::OfMemory(bytes)); }

// Writes the sample files anew after their notes have been changed here; runs only when asked for by name.
TEST(ExportedNote, DISABLED_WriteSamples) {
    for (const SampleFile& sample : SampleFiles())
        std::ofstream(kSamples / sample.name, std::ios::binary) << FileBytes(sample.notes);
}

TEST(ExportedNote, SampleFilesHoldTheirNotes) {
    for (const SampleFile& sample : SampleFiles()) {
        EXPECT_EQ(NotesOf(ByteSource::OfFile(kSamples / sample.name)), sample.notes) << sample.name;
    }
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
}

TEST(ExportedNote, IsANoteAndBack) {
    const ExportedNote record{.Text = L"Käse",
                              .CreationTime = L"heute",
                              .Left = -30,
                              .Top = 45,
                              .Width = 3000,
                              .Height = 2000,
                              .Color = 0x123456,
                              .FontNoteAlignment = 77,
                              .FontNoteSize = 99,
                              .FontNoteItalic = true,
                              .Foreground = true};
    EXPECT_EQ(ToRecord(ToNote(record)), record);
    EXPECT_EQ(ToNote({.Text = std::wstring(L"a\0b", 3)}).text, L"a");
    // Half twips go to the even neighbour.
    const ExportedNote rounded = ToRecord({.place = {2.5, 3.5, 1500.5, 1000.51}});
    EXPECT_EQ(rounded.Left, 2);
    EXPECT_EQ(rounded.Top, 4);
    EXPECT_EQ(rounded.Width, 1500);
    EXPECT_EQ(rounded.Height, 1001);
}

TEST(ExportedNote, ReadsZerosBehindTheEnd) {
    const std::vector<ExportedNote> notes = SampleFiles()[1].notes;
    const std::string whole = FileBytes(notes);
    const std::size_t firstRecord = FileBytes({notes[0]}).size();
    const std::size_t textEnd = 2 + notes[0].Text.size();
    for (std::size_t length = 0; length <= whole.size(); ++length) {
        SCOPED_TRACE(length);
        const std::vector<ExportedNote> read = NotesOf(whole.substr(0, length));
        if (length == 0) {
            EXPECT_TRUE(read.empty());
        } else if (length < firstRecord) {
            ASSERT_EQ(read.size(), 1u);
            EXPECT_FALSE(read[0].Foreground);
            if (length == 1) continue;  // half a length
            std::wstring text = notes[0].Text;
            if (length < textEnd)
                std::fill(text.begin() + static_cast<std::ptrdiff_t>(length) - 2, text.end(), L'\0');
            EXPECT_EQ(read[0].Text, text);
            if (length <= textEnd + 2 + notes[0].CreationTime.size()) {
                EXPECT_EQ(read[0].Width, 0);
            }
        } else {
            EXPECT_EQ(read[0], notes[0]);
        }
    }
    EXPECT_EQ(NotesOf(whole), notes);
}

TEST(ExportedNote, AnEmptyTextEndsTheFile) {
    std::vector<ExportedNote> notes = SampleFiles()[0].notes;
    notes[1].Text.clear();
    EXPECT_EQ(NotesOf(FileBytes(notes)), std::vector<ExportedNote>{notes[0]});
}

// A foreign file is read as records, each byte at most once, and comes to an end.
TEST(ExportedNote, ForeignFilesEnd) {
    std::mt19937 random(5998);
    for (int round = 0; round < 50; ++round) {
        std::string bytes(random() % 400'000, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random());
        std::size_t characters = 0;
        for (const ExportedNote& note : NotesOf(bytes))
            characters += note.Text.size() + note.CreationTime.size();
        EXPECT_LE(characters, bytes.size() + 2 * 65'535);
    }
    // Longest texts, many of them.
    const std::string longest(65'535, 'x');
    ExportedNote note{.Text = std::wstring(longest.begin(), longest.end()), .CreationTime = L""};
    EXPECT_EQ(NotesOf(FileBytes({note, note, note})).size(), 3u);
}

// A note such as anybody might have made, and such as nobody would.
ExportedNote RandomNote(std::mt19937& random) {
    const auto text = [&](std::size_t longest) {
        std::string bytes(random() % (longest + 1), '\0');
        for (char& byte : bytes) byte = static_cast<char>(random());
        return FromAnsi(bytes);
    };
    const auto number = [&] { return static_cast<std::int32_t>(random()); };
    const auto flag = [&] { return random() % 2 == 0; };
    ExportedNote note;
    note.Text = text(random() % 50 == 0 ? 65'535 : 300) + L"x";
    note.Text.resize(std::min<std::size_t>(note.Text.size(), 65'535));
    note.CreationTime = text(30);
    for (std::int32_t* field : {&note.Left, &note.Top, &note.Width, &note.Height, &note.Color,
                                &note.FontNoteAlignment, &note.FontNoteSize})
        *field = number();
    note.FontNoteBold = flag();
    note.FontNoteItalic = flag();
    note.FontNoteUnderlined = flag();
    note.Foreground = flag();
    return note;
}

std::string Written(const std::vector<ExportedNote>& notes) {
    std::string file;
    for (const ExportedNote& note : notes) EXPECT_TRUE(WriteRecord(file, note));
    return file;
}

TEST(ExportedNote, WritesWhatAnotherWriterWrites) {
    for (const SampleFile& sample : SampleFiles())
        EXPECT_EQ(Written(sample.notes), FileBytes(sample.notes)) << sample.name;
}

TEST(ExportedNote, AThousandNotesComeBackAsTheyWere) {
    std::mt19937 random(2026);
    std::vector<ExportedNote> notes(1000);
    for (ExportedNote& note : notes) note = RandomNote(random);
    EXPECT_EQ(NotesOf(Written(notes)), notes);
}

TEST(ExportedNote, CharactersBeyondTheCodePageAreReplaced) {
    const std::vector<ExportedNote> read = NotesOf(Written({{.Text = L"\u4E2D\u6587 Käse"}}));
    ASSERT_EQ(read.size(), 1u);
    EXPECT_EQ(read[0].Text, L"?? Käse");
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

TEST(ExportedNote, PassingOverReadsAsFarAsReading) {
    std::mt19937 random(7);
    std::vector<ExportedNote> notes(300);
    for (ExportedNote& note : notes) note = RandomNote(random);
    const std::string bytes = Written(notes);
    ByteSource file = ByteSource::OfMemory(bytes);
    ExportReader reader(file);
    for (std::size_t i = 0; i < notes.size(); ++i) {
        if (i % 3 == 0) {
            EXPECT_EQ(reader.Next(), notes[i]) << i;
        } else {
            EXPECT_EQ(reader.PassOver(40), notes[i].Text.substr(0, 40)) << i;
        }
    }
    EXPECT_EQ(reader.PassOver(40), L"");
}

}  // namespace
