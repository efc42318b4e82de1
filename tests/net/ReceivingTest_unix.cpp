// A receiver whose notes cannot be saved.
#include "tests/net/NetworkTest.h"
#include "tests/registry/HiveFolder.h"

TEST_F(NetworkTest, ASenderIsToldThatItsNoteIsNotSaved) {
    const HiveFolder hive;
    std::filesystem::create_directories(hive.File());  // no file can lie there
    Open();
    Talk([](RawConnection& connection) {
        connection.Line();
        connection.Ask("NOTE_NEW");
        connection.Ask("NOTE_TEXT Milch");
        EXPECT_TRUE(connection.Ask("NOTE_FINISHED").starts_with("ERROR Error during command execution: "));
    });
    EXPECT_EQ(store.CountNotes(), 0u);
}
