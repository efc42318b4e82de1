#include <gtest/gtest.h>
#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "base/NewFile.h"

namespace {

namespace fs = std::filesystem;

std::string Content(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// A disk that takes no more than so many bytes a file, while this object lives.
class SmallDisk {
  public:
    explicit SmallDisk(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit small{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~SmallDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, handler_);
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;

  private:
    void (*handler_)(int);
    rlimit before_{};
};

}  // namespace

TEST(NewFile, IsPrivateAndReplacesNothing) {
    const fs::path folder = fs::path(std::getenv("XDG_DATA_HOME")) / "newfile";
    fs::create_directories(folder);
    EXPECT_FALSE(WriteNewFile(folder / "a", std::string_view("1\0002", 3)));
    EXPECT_EQ(Content(folder / "a"), std::string("1\0002", 3));
    EXPECT_EQ(fs::status(folder / "a").permissions(), fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_EQ(WriteNewFile(folder / "a", "new"), std::errc::file_exists);
    EXPECT_EQ(Content(folder / "a"), std::string("1\0002", 3));
    fs::create_symlink("elsewhere", folder / "link");
    EXPECT_TRUE(WriteNewFile(folder / "link", "new"));
    EXPECT_FALSE(fs::exists(folder / "elsewhere"));
    EXPECT_EQ(WriteNewFile(folder / "missing" / "a", "new"), std::errc::no_such_file_or_directory);
}

TEST(NewFile, LeavesNothingWhereTheDiskIsFull) {
    const fs::path file = fs::path(std::getenv("XDG_DATA_HOME")) / "too large";
    std::error_code failed;
    {
        const SmallDisk disk(1000);
        failed = WriteNewFile(file, std::string(5000, 'x'));
    }
    EXPECT_TRUE(failed);
    EXPECT_FALSE(fs::exists(file));
}
