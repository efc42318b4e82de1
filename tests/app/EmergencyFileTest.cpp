#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "app/EmergencyFile.h"
#include "tests/support/Support.h"

namespace {

namespace fs = std::filesystem;

UnsavedImage Sample() {
    clsAddressBookEntry entry;
    entry.PCName(L"Büro 3:7");
    entry.IP(L"10.0.0.1");
    entry.Comment(L"Ω\nzweite Zeile");
    return {
        true,
        {{.text = L"Käse Ω", .creationTime = L"heute", .look = {.bold = true}, .place = {1, 2, 3, 4}}, {}},
        {entry, clsAddressBookEntry()}};
}

void ExpectSample(const std::optional<UnsavedImage>& read) {
    const UnsavedImage sample = Sample();
    ASSERT_TRUE(read);
    EXPECT_TRUE(read->autostart);
    EXPECT_EQ(read->notes, sample.notes);
    ASSERT_EQ(read->entries.size(), 2u);
    EXPECT_EQ(read->entries[0].PCName(), sample.entries[0].PCName());
    EXPECT_EQ(read->entries[0].IP(), sample.entries[0].IP());
    EXPECT_EQ(read->entries[0].Comment(), sample.entries[0].Comment());
}

}  // namespace

TEST(EmergencyFile, HoldsEverythingOrIsRefused) {
    const std::string bytes = EmergencyBytes(Sample());
    ExpectSample(ReadEmergencyBytes(bytes));
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(ReadEmergencyBytes(bytes.substr(0, length))) << length;
}

TEST(EmergencyFile, GoesIntoTheFirstPrivateFolder) {
    const fs::path root = fs::temp_directory_path() / "kivora-emergency-test";
    fs::remove_all(root);
    fs::create_directories(root);
    std::ofstream(root / "file") << "in the way";
    const std::vector<fs::path> folders = {root / "file", root / "gibt" / "es nicht", root / "own", root};
    EXPECT_TRUE(EmergencyFiles(folders).empty());
    ASSERT_TRUE(WriteEmergencyFile(Sample(), folders).Kept());
    ASSERT_TRUE(WriteEmergencyFile({}, folders).Kept());  // replaces none that was not taken in
    const std::vector<fs::path> files = EmergencyFiles(folders);
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files[0].parent_path(), root / "own");
    EXPECT_TRUE(IsForTheUserOnly(root / "own"));
    {
        // Closed again before its folder is removed.
        std::ifstream file(files[0], std::ios::binary);
        ExpectSample(ReadEmergencyBytes({std::istreambuf_iterator<char>(file), {}}));
    }
    EXPECT_FALSE(WriteEmergencyFile({}, {root / "file"}).Kept());
    fs::remove_all(root);
}
