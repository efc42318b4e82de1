#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "base/DataFolder.h"
#include "base/FileName.h"
#include "exchange/ExportedNote.h"
#include "exchange/KeptFile.h"
#include "exchange/NoteFolder.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::system_clock;
using Names = std::vector<std::wstring>;
using std::chrono::hours, std::chrono::milliseconds, std::chrono::seconds;

constexpr std::size_t kStamp = 23;

class NoteFolderTest : public testing::Test {
  protected:
    NoteFolderTest() { fs::remove_all(folder_); }

    // All files, in the order of their names.
    Names Files() const {
        Names names;
        for (const auto& file : fs::directory_iterator(folder_))
            names.push_back(FileName(file.path().filename()));
        std::sort(names.begin(), names.end());
        return names;
    }
    // The same without their times.
    Names Words() const {
        Names words = Files();
        for (std::wstring& name : words) name.erase(0, kStamp);
        return words;
    }
    fs::path Path(const std::wstring& name) const { return folder_ / FilePath(name); }

    const Clock::time_point now_ = Clock::now();
    const fs::path folder_ = SharedDataFolder() / "kivora-folder";
};

}  // namespace

TEST_F(NoteFolderTest, KnowsWhatItHolds) {
    const NoteFolder folder(folder_);
    const Note note{.text = L"Milch\r\nund Brot " + std::wstring(300, L'ü'), .creationTime = L"heute"};
    EXPECT_FALSE(folder.Holds(note));
    folder.Keep(note);
    folder.Keep({});
    EXPECT_EQ(Words(), Names{L" Milch und Brot " + std::wstring(25, L'ü') + L".kvr"});
    EXPECT_TRUE(folder.Holds({.text = note.text, .creationTime = note.creationTime}));
    EXPECT_FALSE(folder.Holds({.text = note.text + L" und Eier", .creationTime = note.creationTime}));
    EXPECT_FALSE(folder.Holds({.text = note.text, .creationTime = L"gestern"}));
}

TEST_F(NoteFolderTest, RemovesTheOldestOnly) {
    const NoteFolder folder(folder_, 3);
    fs::create_directories(folder_);
    for (const wchar_t* foreign : {L"1999-01-01 meins.kvr", L"2000-01-01 00.00.00.000 brief.odt", L"alt.kvr"})
        std::ofstream(Path(foreign)) << "x";
    // Earlier versions put a second file with the exact text beside the first.
    for (const wchar_t* ending : {L".kvr", L".txt"})
        std::ofstream(Path(std::wstring(L"2020-01-01 00.00.00.000 1") + ending)) << "x";
    for (const wchar_t* text : {L"2", L"3", L"4", L"Ω 5"}) folder.Keep({.text = text}, now_);
    EXPECT_EQ(Words(), (Names{L"", L" brief.odt", L" 3.kvr", L" 4.kvr", L" Ω 5.kvr", L""}));
}

TEST_F(NoteFolderTest, OrderIsThatOfKeepingWhateverTheClockSays) {
    const std::pair<std::vector<Clock::time_point>, const char*> rows[] = {
        {{now_, now_, now_}, "the same instant"},
        {{now_ + hours(24 * 9000), now_, now_}, "set back from the far future"},
        {{now_, now_ - seconds(1), now_ - hours(1)}, "running backwards"},
        {{now_, now_ + milliseconds(1), now_ + hours(30)}, "as usual"},
        {{Clock::time_point(milliseconds(-1999)), Clock::time_point(milliseconds(-1001)),
          Clock::time_point()},
         "before 1970"},
    };
    for (const auto& [times, name] : rows) {
        SCOPED_TRACE(name);
        const NoteFolder folder(folder_, 2);
        int number = 0;
        for (const Clock::time_point time : times) folder.Keep({.text = std::to_wstring(number++)}, time);
        EXPECT_EQ(Words(), (Names{L" 1.kvr", L" 2.kvr"}));
        fs::remove_all(folder_);
    }
}

TEST_F(NoteFolderTest, GivesBackWhatItHolds) {
    const NoteFolder folder(folder_);
    EXPECT_TRUE(folder.Files().empty());
    const Note one{.text = L"Ω 1", .place = {15, 30, 3000, 2000}}, two{.text = L"2"}, three{.text = L"3"};
    folder.Keep(one, now_);
    folder.KeepTogether({two, {}, three, two}, now_);
    // As earlier versions kept a note: a record, and beside it the text that the code page lacks.
    const std::wstring old = L"2020-01-02 03.04.05.678 alt";
    std::string record;
    WriteRecord(record, ToRecord({.text = L"?", .creationTime = L"damals"}));
    std::ofstream(Path(old + L".kvr"), std::ios::binary) << record;
    std::ofstream(Path(old + L".txt")) << "Ψ";
    std::ofstream(Path(L"2020-01-01 00.00.00.000.kvr"));

    const std::vector<NoteFolder::File> files = folder.Files();
    ASSERT_EQ(files.size(), 4u);
    EXPECT_EQ(files[0].notes, (std::vector<Note>{two, {}, three, two}));
    EXPECT_EQ(files[1].notes, std::vector<Note>{one});
    ASSERT_EQ(files[2].notes.size(), 1u);
    EXPECT_EQ(files[2].notes[0].text, L"Ψ");
    EXPECT_EQ(files[2].notes[0].creationTime, L"damals");
    EXPECT_EQ(NoteFolder::KeptWhen(files[2].name), L"02.01.2020, 03:04:05");
    EXPECT_TRUE(files[3].notes.empty());

    EXPECT_FALSE(folder.TakeOut(files[0].name, {two, one}));
    EXPECT_EQ(folder.NotesOf(files[0].name), (std::vector<Note>{{}, three, two}));
    EXPECT_FALSE(folder.TakeOut(files[0].name, {three, two, {}}));
    EXPECT_FALSE(folder.TakeOut(files[2].name, files[2].notes));
    EXPECT_TRUE(folder.TakeOut(files[3].name, {one}));  // nobody knows what it holds
    EXPECT_EQ(Files(), (Names{files[3].name, files[1].name}));
}

TEST_F(NoteFolderTest, FailsWithoutATrace) {
    std::ofstream(folder_) << "no folder";
    EXPECT_THROW(NoteFolder(folder_).Keep({.text = L"a"}, now_), std::system_error);
    EXPECT_THROW(NoteFolder(folder_ / "b").Keep({.text = L"a"}, now_), std::system_error);
    EXPECT_THROW(NoteFolder(folder_).Files(), std::system_error);
    EXPECT_EQ(fs::file_size(folder_), 9u);
}
