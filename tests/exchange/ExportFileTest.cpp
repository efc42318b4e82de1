#include <gtest/gtest.h>

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

    const fs::path folder = SharedDataFolder() / "kivora export ü test";
};

}  // namespace

TEST_F(ExportFileTest, OpensFilesOnly) {
    for (const fs::path& path : {folder, folder / "fehlt" / "a.kvr", fs::path()}) {
        EXPECT_FALSE(OpenExport(path).good()) << path;
        EXPECT_TRUE(ListNotes(path).empty()) << path;
        EXPECT_FALSE(NoteAt(path, 0)) << path;
    }
    EXPECT_FALSE(OpenExport(folder / "fehlt.kvr").good());
    EXPECT_FALSE(fs::exists(folder / "fehlt.kvr"));
}
