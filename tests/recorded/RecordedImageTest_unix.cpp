// The hive that version 1.6.1 left, read and written by the program as it is now.

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
    EXPECT_EQ(ReadImage(), Content(recorded / "saved.txt"));
}
