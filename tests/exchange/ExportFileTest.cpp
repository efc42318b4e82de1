#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "base/DataFolder.h"
#include "exchange/ExportFile.h"
#include "exchange/ImportFile.h"

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
        EXPECT_TRUE(ListNotes(path).empty()) << path;
        EXPECT_FALSE(NoteAt(path, 0)) << path;
    }
    EXPECT_FALSE(OpenExport(folder / "fehlt.kvr").good());
    EXPECT_FALSE(fs::exists(folder / "fehlt.kvr"));
}
