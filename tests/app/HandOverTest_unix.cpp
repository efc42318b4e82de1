// What only copies that meet at a socket can do to each other: the other copies are forked.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>
#include <vector>

#include "app/HandOver.h"
#include "app/MeetingPlace_unix.h"
#include "tests/app/OtherCopy.h"
#include "tests/support/Events.h"

namespace {

using namespace std::chrono_literals;

constexpr auto kLimit = 10s;

class HandOverSocketTest : public testing::Test {
  protected:
    // A raw connection to the running copy.
    static int Connect() {
        const MeetingPlace place;
        const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const sockaddr_un address = place.SocketAddress();
        EXPECT_EQ(connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
        return fd;
    }

    void Listen() {
        role_->Listen([this](const std::wstring& name) { names_.push_back(name); });
    }

    std::unique_ptr<RunningCopy> role_ = RunningCopy::Claim();
    std::vector<std::wstring> names_;
};

TEST_F(HandOverSocketTest, WaitsForACopyThatIsStillStarting) {
    role_.reset();
    OtherCopy first = OtherCopy::Doing([] {
        MeetingPlace place;
        if (!place.Lock()) return 1;
        std::this_thread::sleep_for(400ms);
        const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
        const sockaddr_un address = place.SocketAddress();
        place.RemoveSocket();
        if (bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) return 2;
        listen(listener, 1);
        const int sender = accept(listener, nullptr, nullptr);
        char buffer[16];
        if (read(sender, buffer, sizeof buffer) != 3) return 3;
        return write(sender, "+", 1) == 1 ? 0 : 4;
    });
    std::this_thread::sleep_for(100ms);
    EXPECT_TRUE(HandOver(L"/a"));
    EXPECT_TRUE(RunUntil([&] { return first.Ended(); }, kLimit));
    EXPECT_EQ(first.Result(), 0);
}

TEST_F(HandOverSocketTest, BadSendersHarmNobody) {
    Listen();
    std::vector<int> silent;
    for (int i = 0; i < 10; ++i) silent.push_back(Connect());
    EXPECT_EQ(write(silent[0], "/half a na", 10), 10);

    OtherCopy flood = OtherCopy::Doing([] {
        std::signal(SIGPIPE, SIG_IGN);
        const int fd = Connect();
        const std::string much(65536, '/');
        for (int i = 0; i < 100; ++i) {
            if (write(fd, much.data(), much.size()) < 0) return 0;  // cut off
        }
        return 1;
    });
    OtherCopy relative = OtherCopy::Doing([] {
        const int fd = Connect();
        if (write(fd, "relative", 9) != 9) return 2;
        char answer = 0;
        return read(fd, &answer, 1) == 1 && answer == '-' ? 0 : 1;
    });
    close(Connect());
    OtherCopy honest = OtherCopy::Sender({L"/honest"});
    EXPECT_TRUE(RunUntil(
        [&] { return flood.Ended() && relative.Ended() && honest.Ended() && !names_.empty(); }, kLimit));
    EXPECT_EQ(flood.Result(), 0);
    EXPECT_EQ(relative.Result(), 0);
    EXPECT_EQ(honest.Result(), 0);
    EXPECT_EQ(names_, std::vector<std::wstring>{L"/honest"});

    // The silent ones are sent away after a while.
    EXPECT_TRUE(RunUntil(
        [&] {
            char byte = 0;
            return recv(silent.back(), &byte, 1, MSG_DONTWAIT) == 0;
        },
        kLimit));
    for (const int fd : silent) close(fd);
}

TEST_F(HandOverSocketTest, SilentSendersInEveryPlaceDelayOthersOnly) {
    Listen();
    std::vector<int> silent;
    for (int i = 0; i < 30; ++i) silent.push_back(Connect());
    RunEvents(100ms);
    // What is not accepted yet gives up its place at once.
    for (std::size_t i = 16; i < silent.size(); ++i) close(silent[i]);
    OtherCopy honest = OtherCopy::Sender({L"/honest"});
    EXPECT_TRUE(RunUntil([&] { return honest.Ended() && !names_.empty(); }, kLimit));
    EXPECT_EQ(honest.Result(), 0);
    for (std::size_t i = 0; i < 16; ++i) close(silent[i]);
}

// Where copies meet, for values of the variables that name the user's folders.
class MeetingPlaceTest : public testing::Test {
  protected:
    MeetingPlaceTest() : data_(std::getenv("XDG_DATA_HOME")), runtime_(std::getenv("XDG_RUNTIME_DIR")) {}
    ~MeetingPlaceTest() override {
        setenv("XDG_DATA_HOME", data_.c_str(), 1);
        setenv("XDG_RUNTIME_DIR", runtime_.c_str(), 1);
    }

    static std::filesystem::path Folder(const MeetingPlace& place) {
        return std::filesystem::read_symlink(
            std::filesystem::path(place.SocketAddress().sun_path).parent_path());
    }

    const std::string data_, runtime_;
    const std::string shared_ = "/tmp/kivora-" + std::to_string(geteuid());
};

TEST_F(MeetingPlaceTest, LiesWithTheNotesHoweverTheProgramWasStarted) {
    const std::filesystem::path expected = std::filesystem::path(data_) / "kivora" / "running";
    for (const char* runtime : {runtime_.c_str(), "", "/nowhere"}) {
        setenv("XDG_RUNTIME_DIR", runtime, 1);
        const MeetingPlace place;
        ASSERT_TRUE(place);
        EXPECT_EQ(Folder(place), expected) << runtime;
        EXPECT_EQ(std::filesystem::status(expected).permissions(), std::filesystem::perms::owner_all);
    }
}

TEST_F(MeetingPlaceTest, IsTakenAlsoWhenItsFolderIsRemoved) {
    MeetingPlace first;
    ASSERT_TRUE(first.Lock());
    std::filesystem::remove_all(Folder(first));
    MeetingPlace second;
    EXPECT_FALSE(second.Lock());
    EXPECT_TRUE(second.IsLocked());
}

TEST_F(MeetingPlaceTest, WithoutAFolderForDataIsAPrivateFolderOfTheUser) {
    setenv("XDG_DATA_HOME", "/proc/nowhere", 1);
    const std::filesystem::path root = runtime_;
    std::filesystem::remove_all(root / "link");
    std::filesystem::create_directories(root / "link");
    std::filesystem::create_directories(root / "elsewhere");
    std::filesystem::create_directory_symlink(root / "elsewhere", root / "link" / "kivora");
    const struct {
        std::string runtime;
        std::filesystem::path folder;
    } rows[] = {
        {root, root / "kivora"},     {root / "link", shared_},  // a link may lead to somebody else's folder
        {root / "missing", shared_}, {"relative", shared_},    {"", shared_},
    };
    for (const auto& row : rows) {
        setenv("XDG_RUNTIME_DIR", row.runtime.c_str(), 1);
        const MeetingPlace place;
        ASSERT_TRUE(place) << row.runtime;
        EXPECT_EQ(Folder(place), row.folder) << row.runtime;
        struct stat status {};
        ASSERT_EQ(stat(row.folder.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0700u) << row.runtime;
    }
}

TEST_F(MeetingPlaceTest, WorksAtTheEndOfALongPath) {
    std::filesystem::path deep = data_;
    for (int i = 0; i < 10; ++i) deep /= std::string(40, 'd');
    std::filesystem::create_directories(deep);
    setenv("XDG_DATA_HOME", deep.c_str(), 1);
    const auto role = RunningCopy::Claim();
    ASSERT_TRUE(role);
    std::wstring received;
    role->Listen([&](const std::wstring& name) { received = name; });
    OtherCopy sender = OtherCopy::Sender({L"/a"});
    EXPECT_TRUE(RunUntil([&] { return sender.Ended() && !received.empty(); }, kLimit));
    EXPECT_EQ(received, L"/a");
    EXPECT_TRUE(std::filesystem::is_socket(deep / "kivora" / "running" / "socket"));
}

}  // namespace
