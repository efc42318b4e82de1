// What only copies that meet at a socket can do to each other.
#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <latch>

#include "app/MeetingPlace_unix.h"
#include "app/RunCommand.h"
#include "base/DataFolder.h"
#include "base/FileName.h"
#include "tests/app/OtherCopy.h"

namespace {

using namespace std::chrono_literals;

class HandOverSocketTest : public HandOverFixture {
  protected:
    // A raw connection to the running copy.
    static int Connect() {
        const Descriptor connected = MeetingPlace().Connect();
        EXPECT_TRUE(connected);
        const int fd = dup(connected.Get());
        fcntl(fd, F_SETFL, 0);  // it waits
        return fd;
    }
};

TEST_F(HandOverSocketTest, WaitsForACopyThatIsAboutToListen) {
    role_.reset();
    std::filesystem::create_directories(DataFolder());
    const Descriptor folder(open(DataFolder().c_str(), O_RDONLY | O_CLOEXEC));
    ASSERT_EQ(flock(folder.Get(), LOCK_EX | LOCK_NB), 0);
    std::future<bool> sender = Sender({L"/a"});
    EXPECT_EQ(sender.wait_for(100ms), std::future_status::timeout);
    flock(folder.Get(), LOCK_UN);
    role_ = RunningCopy::Claim();
    ASSERT_TRUE(role_);
    Listen();
    ExpectTaken(std::move(sender));
}

TEST_F(HandOverSocketTest, BadSendersHarmNobody) {
    Listen();
    std::vector<int> silent;
    const auto isSentAway = [](int sender) {
        char byte = 0;
        return recv(sender, &byte, 1, MSG_DONTWAIT) == 0;
    };
    silent.push_back(Connect());
    // Who hangs up is not watched any longer.
    const int gone = Connect();
    shutdown(gone, SHUT_WR);
    EXPECT_TRUE(RunUntil([&] { return isSentAway(gone); }));
    EXPECT_FALSE(isSentAway(silent[0]));
    close(gone);
    while (silent.size() < 20) silent.push_back(Connect());  // more than are heard at a time
    EXPECT_EQ(write(silent[0], "/half a na", 10), 10);

    std::future<bool> flood = std::async(std::launch::async, [] {
        const Descriptor socket(Connect());
        const std::string much(65536, '/');
        int sent = 0;
        while (sent < 100 && send(socket.Get(), much.data(), much.size(), MSG_NOSIGNAL) >= 0) ++sent;
        return sent < 100;  // cut off
    });
    std::future<bool> relative = std::async(std::launch::async, [] {
        const Descriptor socket(Connect());
        char answer = 0;
        return write(socket.Get(), "relative", 9) == 9 && read(socket.Get(), &answer, 1) == 1 &&
               answer == '-';
    });
    std::future<bool> honest = Sender({L"/honest"});
    EXPECT_TRUE(
        RunUntil([&] { return Ended(flood) && Ended(relative) && Ended(honest) && !names_.empty(); }));
    EXPECT_TRUE(flood.get() && relative.get() && honest.get());
    EXPECT_EQ(names_, std::vector<std::wstring>{L"/honest"});

    // The silent ones are sent away after a while.
    EXPECT_TRUE(RunUntil([&] { return isSentAway(silent.back()); }));
    for (const int fd : silent) close(fd);
}

TEST_F(HandOverSocketTest, WhatIsTakenIsDeliveredBeforeItFinishes) {
    const int senders[] = {Connect(), Connect()};
    for (const int sender : senders) EXPECT_EQ(write(sender, "/a", 3), 3);
    std::size_t delivered = 0, atTheEnd = 0;
    role_->Listen([&](const Command&) {
        if (++delivered == 1) {  // the second one has been taken, too
            role_->Finish();
            atTheEnd = delivered;
        }
        return CommandAnswer();
    });
    EXPECT_TRUE(RunUntil([&] { return delivered == 2; }));
    EXPECT_EQ(atTheEnd, 2u);
    for (const int sender : senders) close(sender);
}

class MeetingPlaceTest : public HandOverFixture {
  protected:
    MeetingPlaceTest() { role_.reset(); }
    ~MeetingPlaceTest() override { setenv("XDG_DATA_HOME", data_.c_str(), 1); }

    const std::string data_ = std::getenv("XDG_DATA_HOME");
};

TEST_F(MeetingPlaceTest, IsTakenWhateverHappensToTheFolderOfTheNotes) {
    const std::filesystem::path folder = DataFolder(), away = folder.parent_path() / "away";
    const std::function<void()> events[] = {
        [&] { std::filesystem::remove_all(folder); },
        [&] { std::filesystem::rename(folder, away); },
        [&] { std::filesystem::create_directories(folder); },
        [&] { std::filesystem::remove_all(folder.parent_path()); },
    };
    for (const auto& event : events) {
        role_ = RunningCopy::Claim();
        ASSERT_TRUE(role_);
        event();
        EXPECT_FALSE(RunningCopy::Claim());
        ExpectHandOver({L"/a"});
        role_.reset();
        std::filesystem::remove_all(away);
    }
}

TEST_F(MeetingPlaceTest, GoesToOneOfManyThatComeAtOnce) {
    constexpr int kCopies = 20;
    std::latch go(kCopies);
    std::vector<std::future<std::unique_ptr<RunningCopy>>> copies;
    for (int i = 0; i < kCopies; ++i) {
        copies.push_back(std::async(std::launch::async, [&] {
            go.arrive_and_wait();
            std::unique_ptr<RunningCopy> role;
            for (int attempt = 0; attempt < 3 && !role; ++attempt) {
                std::error_code ignored;
                std::filesystem::remove_all(DataFolder(), ignored);
                role = RunningCopy::Claim();
            }
            return role;
        }));
    }
    std::vector<std::unique_ptr<RunningCopy>> roles;
    for (auto& copy : copies) roles.push_back(copy.get());
    EXPECT_EQ(std::ranges::count_if(roles, [](const auto& role) { return role != nullptr; }), 1);
}

TEST_F(MeetingPlaceTest, IsTheSameByEveryPathToTheFolder) {
    const std::filesystem::path real = std::filesystem::path(data_) / "real", link = real.native() + "-link";
    std::filesystem::create_directories(real);
    std::filesystem::create_directory_symlink(real, link);
    setenv("XDG_DATA_HOME", real.c_str(), 1);
    role_ = RunningCopy::Claim();
    ASSERT_TRUE(role_);
    setenv("XDG_DATA_HOME", link.c_str(), 1);
    EXPECT_FALSE(RunningCopy::Claim());
    ExpectHandOver({L"/a"});
    setenv("XDG_DATA_HOME", data_.c_str(), 1);
    EXPECT_TRUE(RunningCopy::Claim()) << "other notes";
    std::filesystem::remove(link);
}

TEST_F(MeetingPlaceTest, NeedsNoFolder) {
    for (const std::string& data :
         {std::string("/proc/nowhere"), data_ + "/" + std::string(200, 'd') + "/" + std::string(200, 'd')}) {
        setenv("XDG_DATA_HOME", data.c_str(), 1);
        role_ = RunningCopy::Claim();
        ASSERT_TRUE(role_);
        EXPECT_FALSE(RunningCopy::Claim());
        ExpectHandOver({L"/a"});
    }
}

TEST_F(MeetingPlaceTest, HalfAnAnswerIsAFailure) {
    MeetingPlace place;
    ASSERT_TRUE(place.Lock());
    auto command = std::async(std::launch::async, [] { return RunCommand({L"--list", {}}); });
    Descriptor asker;
    EXPECT_TRUE(RunUntil([&] { return static_cast<bool>(asker = place.Accept()); }));
    char byte = 0;
    EXPECT_TRUE(RunUntil([&] { return recv(asker.Get(), &byte, 1, MSG_DONTWAIT) == 1 && byte == '\0'; }));
    EXPECT_EQ(send(asker.Get(), "+0 9\nhalf", 9, MSG_NOSIGNAL), 9);
    asker = Descriptor();
    EXPECT_EQ(command.get(), 1);
}

// A socket of another user.
Descriptor OfNobody(int (*call)(int, const sockaddr*, socklen_t), const sockaddr_un& address,
                    socklen_t size) {
    Descriptor made(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    EXPECT_EQ(seteuid(65534), 0);
    EXPECT_EQ(call(made.Get(), reinterpret_cast<const sockaddr*>(&address), size), 0);
    if (call == bind) {
        EXPECT_EQ(listen(made.Get(), 1), 0);
    }
    EXPECT_EQ(seteuid(0), 0);
    return made;
}

TEST_F(MeetingPlaceTest, BelongsToOneUser) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can be two users";
    sockaddr_un address{};
    socklen_t size = sizeof address;
    {
        MeetingPlace place;
        ASSERT_TRUE(place.Lock());
        getsockname(place.Socket().Get(), reinterpret_cast<sockaddr*>(&address), &size);
    }
    role_ = RunningCopy::Claim();
    ASSERT_TRUE(role_);
    Listen();
    {
        const Descriptor intruder = OfNobody(connect, address, size);
        EXPECT_EQ(send(intruder.Get(), "/a", 3, MSG_NOSIGNAL), 3);
        char byte = 0;
        EXPECT_TRUE(
            RunUntil([&] { return recv(intruder.Get(), &byte, 1, MSG_DONTWAIT) != -1 || errno != EAGAIN; }));
        EXPECT_TRUE(names_.empty());
    }
    role_.reset();
    const Descriptor taken = OfNobody(bind, address, size);
    EXPECT_FALSE(MeetingPlace().Connect()) << "nobody else hears of files";
    EXPECT_TRUE(RunningCopy::Claim()) << "nobody else keeps a user from the notes";
}

}  // namespace

std::vector<std::wstring> NamesOfAllKinds() {
    return {L"/Eigene Notizen/ä ö ü €.kvr", L"/line\nbreak", FileName("/Latin-1 \xE4.kvr"), L"/ /[print]",
            L"/" + std::wstring(4000, L'x')};
}
