#include <gtest/gtest.h>

#include <chrono>
#include <iterator>
#include <random>

#include "base/DataFolder.h"
#include "exchange/ExportFile.h"
#include "tests/exchange/SampleNotes.h"

namespace {

namespace fs = std::filesystem;

class ExportFileTest : public testing::Test {
  protected:
    ExportFileTest() {
        fs::remove_all(folder);
        fs::create_directories(folder);
    }
    ~ExportFileTest() override { fs::remove_all(folder); }

    fs::path Write(const std::string& bytes) const {
        std::ofstream(folder / "a.kvr", std::ios::binary) << bytes;
        return folder / "a.kvr";
    }
    static std::string Content(const fs::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    const fs::path folder = SharedDataFolder() / "kivora export ü test";
};

std::vector<ExportedNote> Notes(const std::vector<std::wstring>& texts) {
    std::vector<ExportedNote> notes;
    for (const std::wstring& text : texts) {
        notes.push_back({.Text = text, .CreationTime = L"21.11.2026, 09:15:00"});
        notes.back().Left = static_cast<std::int32_t>(notes.size());
    }
    return notes;
}

}  // namespace

TEST_F(ExportFileTest, WritesOverTheBeginningAndKeepsTheRest) {
    const fs::path path = Write("0123456789");
    OpenForExport(path) << "abc";
    EXPECT_EQ(Content(path), "abc3456789");
    EXPECT_TRUE(OpenForExport(path).good());
    EXPECT_EQ(Content(path), "abc3456789");
    const fs::path fresh = folder / "neu.kvr";
    EXPECT_TRUE(OpenForExport(fresh).good());
    EXPECT_EQ(fs::file_size(fresh), 0u);
}

TEST_F(ExportFileTest, OpensFilesOnly) {
    for (const fs::path& path : {folder, folder / "fehlt" / "a.kvr", fs::path()}) {
        EXPECT_FALSE(OpenForExport(path).good()) << path;
        EXPECT_FALSE(OpenExport(path).good()) << path;
        EXPECT_TRUE(ListExport(path).empty()) << path;
        EXPECT_FALSE(RecordOf(path, 0)) << path;
    }
    EXPECT_FALSE(OpenExport(folder / "fehlt.kvr").good());
    EXPECT_FALSE(fs::exists(folder / "fehlt.kvr"));
}

TEST_F(ExportFileTest, ListAndRecordsAgree) {
    const std::wstring longText = std::wstring(5000, L'ü');
    const std::vector<ExportedNote> notes = Notes({L"eins\r\nzwei", L"a\rb\nc\td\n\ne", longText, L" x "});
    const fs::path path = Write(FileBytes(notes));
    EXPECT_EQ(ListExport(path), (std::vector<std::wstring>{L"eins zwei", L"a b c d e",
                                                           longText.substr(0, kListedCharacters), L" x "}));
    for (std::size_t i = 0; i < notes.size(); ++i) EXPECT_EQ(RecordOf(path, i), notes[i]) << i;
    EXPECT_FALSE(RecordOf(path, notes.size()));
}

TEST_F(ExportFileTest, AnEmptyTextEndsTheFile) {
    const fs::path path = Write(FileBytes(Notes({L"eins", L"", L"drei"})));
    EXPECT_EQ(ListExport(path), std::vector<std::wstring>{L"eins"});
    EXPECT_TRUE(RecordOf(path, 0));
    EXPECT_FALSE(RecordOf(path, 1));
    EXPECT_FALSE(RecordOf(path, 2));
    Write(FileBytes(Notes({L"", L"zwei"})));
    EXPECT_TRUE(ListExport(path).empty());
}

TEST_F(ExportFileTest, VeryManyRecordsAreListedSoon) {
    std::vector<ExportedNote> notes(100'000, Notes({L"Einkaufen: Milch, Brot, Käse\r\nund Butter"})[0]);
    notes.back().Text = L"letzte";
    const fs::path path = Write(FileBytes(notes));
    const auto start = std::chrono::steady_clock::now();
    const std::vector<std::wstring> texts = ListExport(path);
    // Were each record looked for from the beginning, it would be minutes.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    ASSERT_EQ(texts.size(), notes.size());
    EXPECT_EQ(texts.back(), L"letzte");
    EXPECT_EQ(RecordOf(path, notes.size() - 1), notes.back());
}

TEST_F(ExportFileTest, ForeignFilesAreListedWithinLimits) {
    std::mt19937 random(53);
    std::string noise(64'000'000, '\0');
    for (std::size_t i = 0; i + 4 <= noise.size(); i += 4) {
        const std::uint32_t four = random();
        noise.replace(i, 4, reinterpret_cast<const char*>(&four), 4);
    }
    std::string ones;  // the smallest records, more than anybody has
    for (std::size_t i = 0; i < kMostRecords + 1000; ++i)
        ones += FileBytes({ExportedNote{.Text = L"1", .CreationTime = L""}});
    const struct {
        const char* name;
        const std::string& bytes;
        std::size_t most;
    } rows[] = {{"noise", noise, 2 * noise.size() / 65'535 + 1000}, {"ones", ones, kMostRecords}};
    for (const auto& row : rows) {
        const fs::path path = Write(row.bytes);
        const auto start = std::chrono::steady_clock::now();
        const std::vector<std::wstring> texts = ListExport(path);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2)) << row.name;
        EXPECT_LE(texts.size(), row.most) << row.name;
        for (const std::wstring& text : texts) ASSERT_LE(text.size(), kListedCharacters) << row.name;
    }
}
