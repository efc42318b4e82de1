#include <gtest/gtest.h>

#include <set>

#include "app/EmergencyFile.h"
#include "tests/support/Files.h"
#include "tests/support/Support.h"

namespace {

namespace fs = std::filesystem;

UnsavedImage Sample() {
    const clsAddressBookEntry entry(L"Büro 3:7", L"10.0.0.1", L"Ω\nzweite Zeile");
    return {
        true,
        {{.text = L"Käse Ω", .creationTime = L"heute", .look = {.bold = true}, .place = {1, 2, 3, 4}}, {}},
        {entry, clsAddressBookEntry()},
        0xFEDCBA9876543210,
        {L"/home/Käse.kvr", L""}};
}

}  // namespace

TEST(EmergencyFile, HoldsEverythingOrIsRefused) {
    const std::string bytes = EmergencyBytes(Sample());
    EXPECT_TRUE(ReadEmergencyBytes(bytes) == Sample());
    for (std::size_t length = 0; length < bytes.size(); ++length)
        EXPECT_FALSE(ReadEmergencyBytes(bytes.substr(0, length))) << length;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        std::string altered = bytes;
        altered[at] = static_cast<char>(altered[at] ^ 1);
        EXPECT_FALSE(ReadEmergencyBytes(altered)) << at;
    }
}

TEST(EmergencyFile, TakesThePlaceOfWhatIsThereOrIsAddedToIt) {
    const Note same = {.text = L"gleich", .place = {1, 2, 3, 4}};
    Note moved = same;
    moved.place.left = 5;
    const Note edited = {.text = L"geändert"}, deleted = {.text = L"gelöscht"};
    const Note whole = {.text = std::wstring(5000, L'x'), .creationTime = L"heute"};
    const Note blank = {.creationTime = L"heute"};  // what the registry gives back of it
    const std::vector<Note> there = {deleted, same, blank, same}, notes = {moved, edited, whole};
    for (const bool replaces : {true, false}) {
        const Takeover takeover = TakeoverOf(there, notes, replaces);
        EXPECT_EQ(takeover.same, (std::vector<std::pair<std::size_t, Note>>{{1, moved}, {2, whole}}));
        EXPECT_EQ(takeover.added, std::vector<Note>{edited});
        EXPECT_EQ(std::set(takeover.gone.begin(), takeover.gone.end()),
                  replaces ? std::set<std::size_t>({0, 3}) : std::set<std::size_t>());
    }
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
    EXPECT_TRUE(ReadEmergencyBytes(Content(files[0])) == Sample());
    EXPECT_FALSE(WriteEmergencyFile({}, {root / "file"}).Kept());
    fs::remove_all(root);
}
