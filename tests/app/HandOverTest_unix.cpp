// What only copies that meet at a socket can do to each other: the other copies are forked.
#include <fcntl.h>
#include <glib.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>
#include <vector>

#include "app/HandOver.h"
#include "app/MeetingPlace_unix.h"
#include "base/FileName.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// A process that does one thing; its result is its exit code. Killed at the end of the test.
class Child {
  public:
    explicit Child(const std::function<int()>& work) : pid_(fork()) {
        if (pid_ == 0) _exit(work());
    }
    ~Child() {
        if (!ended_) Kill();
    }
    Child(Child&& other) noexcept : pid_(other.pid_), ended_(other.ended_) { other.ended_ = true; }

    void Kill() {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
        ended_ = true;
    }
    void Stop() {
        kill(pid_, SIGSTOP);
        waitpid(pid_, nullptr, WUNTRACED);
    }
    bool Ended() {
        if (!ended_ && waitpid(pid_, &status_, WNOHANG) == pid_) ended_ = true;
        return ended_;
    }
    int Result() const { return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1; }

  private:
    pid_t pid_;
    bool ended_ = false;
    int status_ = 0;
};

Child Sender(const std::wstring& name) {
    return Child([=] {
        close_range(3, ~0U, 0);  // a copy started by the user shares nothing with the first one
        return HandOver(name) ? 0 : 1;
    });
}

// Runs the event loop until the condition holds. The longest time that one round took.
Clock::duration RunUntil(const std::function<bool()>& condition, Clock::duration limit = 10s) {
    const guint tick = g_timeout_add(
        10, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    const Clock::time_point end = Clock::now() + limit;
    Clock::duration longest{};
    while (!condition() && Clock::now() < end) {
        const Clock::time_point start = Clock::now();
        g_main_context_iteration(nullptr, TRUE);
        longest = std::max(longest, Clock::now() - start);
    }
    g_source_remove(tick);
    EXPECT_TRUE(condition());
    return longest;
}

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
    Child first([] {
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
    RunUntil([&] { return first.Ended(); });
    EXPECT_EQ(first.Result(), 0);
}

TEST_F(HandOverSocketTest, BadSendersHarmNobody) {
    Listen();
    std::vector<int> silent;
    for (int i = 0; i < 10; ++i) silent.push_back(Connect());
    EXPECT_EQ(write(silent[0], "/half a na", 10), 10);

    Child flood([] {
        std::signal(SIGPIPE, SIG_IGN);
        const int fd = Connect();
        const std::string much(65536, '/');
        for (int i = 0; i < 100; ++i) {
            if (write(fd, much.data(), much.size()) < 0) return 0;  // cut off
        }
        return 1;
    });
    Child relative([] {
        const int fd = Connect();
        if (write(fd, "relative", 9) != 9) return 2;
        char answer = 0;
        return read(fd, &answer, 1) == 1 && answer == '-' ? 0 : 1;
    });
    close(Connect());
    Child honest = Sender(L"/honest");
    const Clock::duration longest =
        RunUntil([&] { return flood.Ended() && relative.Ended() && honest.Ended() && !names_.empty(); }, 3s);
    EXPECT_LT(longest, 200ms);
    EXPECT_EQ(flood.Result(), 0);
    EXPECT_EQ(relative.Result(), 0);
    EXPECT_EQ(honest.Result(), 0);
    EXPECT_EQ(names_, std::vector<std::wstring>{L"/honest"});

    // The silent ones are sent away after a while.
    RunUntil([&] {
        char byte = 0;
        return recv(silent.back(), &byte, 1, MSG_DONTWAIT) == 0;
    });
    for (const int fd : silent) close(fd);
}

TEST_F(HandOverSocketTest, SilentSendersInEveryPlaceDelayOthersOnly) {
    Listen();
    std::vector<int> silent;
    for (int i = 0; i < 30; ++i) silent.push_back(Connect());
    RunUntil([start = Clock::now()] { return Clock::now() > start + 100ms; });
    // What is not accepted yet gives up its place at once.
    for (std::size_t i = 16; i < silent.size(); ++i) close(silent[i]);
    Child honest = Sender(L"/honest");
    RunUntil([&] { return honest.Ended() && !names_.empty(); });
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
    Child sender = Sender(L"/a");
    RunUntil([&] { return sender.Ended() && !received.empty(); });
    EXPECT_EQ(received, L"/a");
    EXPECT_TRUE(std::filesystem::is_socket(deep / "kivora" / "running" / "socket"));
}

}  // namespace
