#include <gtest/gtest.h>
#include <unistd.h>

#include "app/EmergencyFile.h"

// Temporary folders are everybody's: what others have put there is not ours to write into or to believe.
TEST(EmergencyFile, DoesNotGoWhereOthersCanReachIt) {
    namespace fs = std::filesystem;
    const fs::path root = fs::temp_directory_path() / "kivora-emergency-test";
    fs::remove_all(root);
    fs::create_directories(root / "own");
    fs::permissions(root / "own", fs::perms::owner_all);
    fs::create_directory_symlink(root / "own", root / "link");
    fs::create_directory(root / "open");
    fs::permissions(root / "open", fs::perms::owner_all | fs::perms::group_all);
    EXPECT_TRUE(IsPrivateFolder(root / "own"));
    EXPECT_FALSE(IsPrivateFolder(root / "link"));
    EXPECT_FALSE(IsPrivateFolder(root / "open"));
    if (geteuid() == 0) {  // who alone can give it away
        EXPECT_EQ(chown((root / "own").c_str(), 65534, 65534), 0);
        EXPECT_FALSE(IsPrivateFolder(root / "own"));
    }
    fs::remove_all(root);
}
