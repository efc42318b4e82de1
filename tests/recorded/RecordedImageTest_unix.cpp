// The hive that version 1.6.1 left, read and written by the program as it is now.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "model/StoredImage.h"
#include "tests/registry/HiveFolder.h"
#include "tests/registry/RegistryImage.h"

TEST(Recorded, AHiveIsReadAndWrittenByteForByte) {
    const std::filesystem::path recorded = KIVORA_RECORDED;
    const HiveFolder hive;
    std::filesystem::create_directories(hive.Folder());
    std::filesystem::copy_file(recorded / "registry.sqlite", hive.File());
    const StoredImage image = ReadStoredImage();
    std::vector<const Note*> notes;
    for (const StoredNote& stored : image.notes) notes.push_back(&stored.note);
    EXPECT_TRUE(WriteStoredImage(image.autostart, notes, image.entries).Kept());

    std::ifstream saved(recorded / "saved.txt", std::ios::binary);
    EXPECT_EQ(ReadImage(), std::string(std::istreambuf_iterator<char>(saved), {}));
}
