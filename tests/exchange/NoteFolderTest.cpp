#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include "base/DataFolder.h"
#include "base/FileName.h"
#include "base/basText.h"
#include "exchange/ExportFile.h"
#include "exchange/NoteFolder.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::system_clock;
using Names = std::vector<std::wstring>;
using std::chrono::hours, std::chrono::milliseconds, std::chrono::seconds;

constexpr std::size_t kStamp = 23;

class NoteFolderTest : public testing::Test {
  protected:
    NoteFolderTest()
        : folder_(SharedDataFolder() / ("kivora-folder-" + std::to_string(now_.time_since_epoch().count()))) {
    }
    ~NoteFolderTest() override {
        std::error_code ignored;
        fs::permissions(folder_, fs::perms::owner_all, ignored);
        fs::remove_all(folder_, ignored);
    }

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
    const fs::path folder_;
};

}  // namespace

TEST_F(NoteFolderTest, KeepsTheWholeNote) {
    const ExportedNote note{.Text = L"Milch\r\nund Brot €",
                            .CreationTime = L"21.11.2026, 13:05:00",
                            .Left = -30,
                            .Top = 45,
                            .Width = 3000,
                            .Height = 2000,
                            .Color = 0xFFFF00,
                            .FontNoteAlignment = 2,
                            .FontNoteSize = 25,
                            .FontNoteBold = true,
                            .FontNoteItalic = false,
                            .FontNoteUnderlined = true,
                            .Foreground = true};
    NoteFolder(folder_ / "a" / "b").Keep(note, now_);
    const auto file = *fs::directory_iterator(folder_ / "a" / "b");
    EXPECT_EQ(FileName(file.path().filename()).substr(kStamp), L" Milch und Brot €.kvr");
    EXPECT_EQ(RecordOf(file.path(), 0), note);
    EXPECT_EQ(RecordOf(file.path(), 1), std::nullopt);
}

TEST_F(NoteFolderTest, NamesSayWhatIsInside) {
    const std::pair<std::wstring, Names> rows[] = {
        {L"", {}},
        {L" \r\n", {L".kvr"}},
        {L"a/b:c", {L" a b c.kvr"}},
        {std::wstring(300, L'ü'), {L" " + std::wstring(40, L'ü') + L".kvr"}},
        // What the code page lacks stands in a file of its own.
        {L"Ω ja", {L" Ω ja.kvr", L" Ω ja.txt"}},
    };
    for (const auto& [text, words] : rows) {
        fs::create_directories(folder_);
        NoteFolder(folder_).Keep({.Text = text}, now_);
        EXPECT_EQ(Words(), words);
        fs::remove_all(folder_);
    }
}

TEST_F(NoteFolderTest, KeepsTextThatNoExportFileCanHold) {
    const std::wstring text = L"Ω\r\nÄ 漢字";
    NoteFolder(folder_).Keep({.Text = text}, now_);
    std::ifstream file(Path(Files().at(1)), std::ios::binary);
    EXPECT_EQ(FromUtf8(std::string(std::istreambuf_iterator<char>(file), {})), text);
}

TEST_F(NoteFolderTest, SplitsLongTextsAtLineEnds) {
    std::wstring text;
    for (int i = 0; i < 20'000; ++i) text += L"Zeile " + std::to_wstring(i) + L"\r\n";
    NoteFolder(folder_).Keep({.Text = text}, now_);
    std::wstring read;
    const fs::path file = Path(Files().at(0));
    const std::size_t records = ListExport(file).size();
    EXPECT_GT(records, 1u);
    for (std::size_t i = 0; i < records; ++i) {
        if (i > 0) read += L"\r\n";
        read += RecordOf(file, i)->Text;
    }
    EXPECT_EQ(read, text);

    NoteFolder(folder_).Keep({.Text = std::wstring(200'000, L'x')}, now_);
    EXPECT_EQ(ListExport(Path(Files().at(1))).size(), 4u);
}

TEST_F(NoteFolderTest, RemovesTheOldestOnly) {
    const NoteFolder folder(folder_, 3);
    fs::create_directories(folder_);
    const Names foreign = {L"1999-01-01 meins.kvr", L"2000-01-01 00.00.00.000 brief.odt", L"alt.kvr"};
    for (const std::wstring& name : foreign) std::ofstream(Path(name)) << "x";
    for (const wchar_t* text : {L"Ω 1", L"2", L"3", L"4", L"Ω 5"}) folder.Keep({.Text = text}, now_);
    Names kept;
    for (const std::wstring& name : Files()) {
        if (std::find(foreign.begin(), foreign.end(), name) == foreign.end())
            kept.push_back(name.substr(kStamp));
    }
    EXPECT_EQ(kept, (Names{L" 3.kvr", L" 4.kvr", L" Ω 5.kvr", L" Ω 5.txt"}));
    EXPECT_EQ(Files().size(), kept.size() + foreign.size());
}

TEST_F(NoteFolderTest, OrderIsThatOfKeepingWhateverTheClockSays) {
    const std::pair<std::vector<Clock::time_point>, const char*> rows[] = {
        {{now_, now_, now_}, "the same instant"},
        {{now_ + hours(24 * 9000), now_, now_}, "set back from the far future"},
        {{now_, now_ - seconds(1), now_ - hours(1)}, "running backwards"},
        {{now_, now_ + milliseconds(1), now_ + hours(30)}, "as usual"},
    };
    for (const auto& [times, name] : rows) {
        SCOPED_TRACE(name);
        const NoteFolder folder(folder_, 2);
        int number = 0;
        for (const Clock::time_point time : times) folder.Keep({.Text = std::to_wstring(number++)}, time);
        EXPECT_EQ(Words(), (Names{L" 1.kvr", L" 2.kvr"}));
        fs::remove_all(folder_);
    }
}

TEST_F(NoteFolderTest, FailsWithoutATrace) {
    std::ofstream(folder_) << "no folder";
    EXPECT_THROW(NoteFolder(folder_).Keep({.Text = L"a"}, now_), std::system_error);
    EXPECT_THROW(NoteFolder(folder_ / "b").Keep({.Text = L"a"}, now_), std::system_error);
    EXPECT_EQ(fs::file_size(folder_), 9u);
}

TEST_F(NoteFolderTest, KeepsUnderAShorterNameWhereTheLongOneIsTaken) {
    // A folder stands where the text would go.
    NoteFolder(folder_).Keep({.Text = L"x"}, now_);
    const std::wstring stamp = Files().at(0).substr(0, kStamp);
    fs::remove_all(folder_);
    fs::create_directories(Path(stamp + L" Ω.txt"));
    NoteFolder(folder_).Keep({.Text = L"Ω"}, now_);
    EXPECT_EQ(Words(), (Names{L" Ω.txt", L".kvr", L".txt"}));
}
