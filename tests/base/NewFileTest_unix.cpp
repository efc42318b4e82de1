#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "base/NewFile.h"
#include "tests/support/Files.h"
#include "tests/support/SmallDisk_unix.h"

namespace {

namespace fs = std::filesystem;

// What the root user may do does not count while this object lives.
class OrdinaryUser {
  public:
    OrdinaryUser() { EXPECT_TRUE(geteuid() != 0 || seteuid(kNobody) == 0); }
    ~OrdinaryUser() { EXPECT_TRUE(getuid() != 0 || seteuid(0) == 0); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

    static constexpr uid_t kNobody = 65534;
};

struct stat StatusOf(const fs::path& path) {
    struct stat status {};
    EXPECT_EQ(lstat(path.c_str(), &status), 0) << path;
    return status;
}

class SaveFileOnUnix : public testing::Test {
  protected:
    SaveFileOnUnix() {
        fs::create_directories(folder_);
        // Also for another user, whose folders are above.
        fs::current_path(folder_);
    }
    ~SaveFileOnUnix() override {
        fs::current_path("/");
        fs::remove_all(folder_);
    }
    fs::path Write(const char* name, mode_t mode, const std::string& bytes = "old") const {
        std::ofstream(name) << bytes;
        chmod(name, mode);
        EXPECT_TRUE(geteuid() != 0 || chown(name, OrdinaryUser::kNobody, OrdinaryUser::kNobody) == 0);
        return name;
    }

    const fs::path folder_ = fs::path(std::getenv("XDG_DATA_HOME")) / "save";
};

}  // namespace

TEST_F(SaveFileOnUnix, NewFilesMayBePrivateAndReplaceNothing) {
    EXPECT_FALSE(WriteNewFile("a", std::string_view("1\0002", 3)));
    EXPECT_EQ(StatusOf("a").st_mode & 07777, 0600u);
    EXPECT_EQ(WriteNewFile("a", "new"), std::errc::file_exists);
    EXPECT_EQ(Content("a"), std::string("1\0002", 3));
    fs::create_symlink("elsewhere", "link");
    EXPECT_TRUE(WriteNewFile("link", "new"));
    EXPECT_FALSE(fs::exists("elsewhere"));
    EXPECT_EQ(WriteNewFile("missing/a", "new"), std::errc::no_such_file_or_directory);
}

TEST_F(SaveFileOnUnix, NewFilesAreTheUsersToWrite) {
    for (const auto& [mask, mode] : {std::pair(0, 0644), {022, 0644}, {027, 0640}, {077, 0600}}) {
        const mode_t before = umask(static_cast<mode_t>(mask));
        EXPECT_FALSE(SaveFile("new", "x"));
        umask(before);
        EXPECT_EQ(StatusOf("new").st_mode & 07777, static_cast<mode_t>(mode)) << std::oct << mask;
        fs::remove("new");
    }
}

TEST_F(SaveFileOnUnix, ReplacedFilesKeepOwnerRightsAndLinks) {
    for (const mode_t mode : {0600, 0640, 0666, 0755}) {
        const struct stat before = StatusOf(Write("file", mode));
        fs::create_symlink("file", "link");
        fs::create_symlink(folder_ / "link", "far");
        EXPECT_FALSE(SaveFile("far", "new"));
        const struct stat after = StatusOf("file");
        EXPECT_EQ(after.st_mode, before.st_mode) << std::oct << mode;
        EXPECT_EQ(after.st_uid, before.st_uid);
        EXPECT_EQ(after.st_gid, before.st_gid);
        EXPECT_NE(after.st_ino, before.st_ino) << "it is another file";
        EXPECT_EQ(Content("file"), "new");
        EXPECT_TRUE(fs::is_symlink("far") && fs::is_symlink("link"));
        for (const char* name : {"far", "link", "file"}) fs::remove(name);
    }
    fs::create_symlink("nowhere", "link");
    EXPECT_FALSE(SaveFile("link", "new"));
    EXPECT_TRUE(fs::is_symlink("link"));
    EXPECT_EQ(Content("nowhere"), "new");
}

// In a folder of somebody else's the file is all that may be written.
TEST_F(SaveFileOnUnix, WithoutTheFoldersConsentTheFileIsWrittenInPlace) {
    const ino_t file = StatusOf(Write("file", 0600, "0123456789")).st_ino;
    Write("protected", 0400);
    fs::permissions(".", fs::perms(0555));
    {
        const OrdinaryUser user;
        EXPECT_FALSE(SaveFile("file", "abc", Rest::Keep));
        EXPECT_EQ(Content("file"), "abc3456789");
        EXPECT_FALSE(SaveFile("file", "abc"));
        EXPECT_EQ(Content("file"), "abc");
        EXPECT_EQ(SaveFile("new", "x"), std::errc::permission_denied);
        EXPECT_EQ(SaveFile("protected", "x"), std::errc::permission_denied);
        const SmallDisk disk(1000);
        EXPECT_TRUE(SaveFile("file", std::string(5000, 'x')));
        EXPECT_EQ(Content("file"), "abc");
    }
    fs::permissions(".", fs::perms(0777));
    {
        const OrdinaryUser user;
        EXPECT_EQ(SaveFile("protected", "x"), std::errc::permission_denied) << "it could be replaced";
    }
    EXPECT_EQ(StatusOf("file").st_ino, file);
    EXPECT_EQ(Content("protected"), "old");
}

TEST_F(SaveFileOnUnix, AFullDiskLeavesTheOldFile) {
    Write("file", 0600);
    {
        const SmallDisk disk(1000);
        EXPECT_TRUE(SaveFile("file", std::string(5000, 'x')));
        EXPECT_TRUE(SaveFile("new", std::string(5000, 'x')));
        EXPECT_TRUE(WriteNewFile("new", std::string(5000, 'x')));
    }
    EXPECT_EQ(Content("file"), "old");
    EXPECT_EQ(std::distance(fs::directory_iterator("."), {}), 1);
}

TEST_F(SaveFileOnUnix, OnlyFilesAreWritten) {
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    fs::create_symlink("pipe", "link");
    fs::create_symlink("loop", "loop");
    for (const char* name : {"pipe", "link", "/dev/full", "/dev/null"})
        EXPECT_EQ(SaveFile(name, "x"), std::errc::invalid_argument) << name;
    EXPECT_EQ(SaveFile("loop", "x"), std::errc::too_many_symbolic_link_levels);
    EXPECT_TRUE(fs::is_fifo("pipe") && fs::is_symlink("link") && fs::is_symlink("loop"));
    // A file that has lost its name is one nevertheless.
    const int open = memfd_create("x", 0);
    EXPECT_FALSE(SaveFile("/proc/self/fd/" + std::to_string(open), "new"));
    EXPECT_EQ(Content("/proc/self/fd/" + std::to_string(open)), "new");
    close(open);
}
