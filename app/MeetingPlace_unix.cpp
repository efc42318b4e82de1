#include "app/MeetingPlace_unix.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <string>
#include <thread>
#include <utility>

#include "base/ByteFields.h"
#include "base/DataFolder.h"

namespace fs = std::filesystem;

namespace {

constexpr int kAttempts = 4;
constexpr std::chrono::milliseconds kPause{10};

// The same for every path to the folder above, and also while the folder itself is missing.
fs::path PathOfNotes() {
    std::error_code failed;
    const fs::path above = fs::weakly_canonical(SharedDataFolder(), failed);
    return failed || above.empty() ? DataFolder() : above / DataFolder().filename();
}

Descriptor OpenFolder(const fs::path& path) {
    if (path.empty()) return Descriptor();
    g_mkdir_with_parents(path.c_str(), 0700);
    return Descriptor(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

Descriptor NewSocket() { return Descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)); }

// Calls bind or connect with the name, which has a NUL in front where others have a path.
int WithName(int (*call)(int, const sockaddr*, socklen_t), const Descriptor& socket, const fs::path& notes) {
    const std::string name =
        "kivora-" + std::to_string(geteuid()) + "-" + std::to_string(CheckSum(notes.native()));
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::size_t length = name.copy(address.sun_path + 1, sizeof address.sun_path - 1);
    return call(socket.Get(), reinterpret_cast<const sockaddr*>(&address),
                static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + length));
}

// Names can be taken, and connected to, by every user.
bool IsOfThisUser(const Descriptor& connection) {
    ucred other{};
    socklen_t size = sizeof other;
    return getsockopt(connection.Get(), SOL_SOCKET, SO_PEERCRED, &other, &size) == 0 &&
           other.uid == geteuid();
}

// True as well where there is nothing to lock.
bool TakeLock(const Descriptor& folder) {
    return flock(folder.Get(), LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK;
}

}  // namespace

Descriptor::~Descriptor() {
    if (fd_ >= 0) close(fd_);
}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept {
    std::swap(fd_, other.fd_);
    return *this;
}

MeetingPlace::MeetingPlace() : path_(PathOfNotes()), folder_(OpenFolder(path_)) {}

bool MeetingPlace::Lock() {
    // Somebody who only looks whether the folder is locked has it for a moment, too.
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (attempt > 0) std::this_thread::sleep_for(kPause);
        // The folder first: from then on it shows that somebody is about to listen.
        if (TakeLock(folder_)) return TakeName();
    }
    return false;
}

bool MeetingPlace::TakeName() {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (attempt > 0) std::this_thread::sleep_for(kPause);
        socket_ = NewSocket();
        if (WithName(bind, socket_, path_) == 0 && listen(socket_.Get(), SOMAXCONN) == 0) return true;
        const bool inUse = errno == EADDRINUSE;
        socket_ = Descriptor();
        if (!inUse) return true;
        if (Connect()) return false;
        // Its owner is about to listen, or it is another user, who keeps nobody from his notes.
    }
    return true;
}

bool MeetingPlace::IsLocked() const {
    if (Connect()) return true;
    // The lock belongs to the opening of the folder, so an opening of its own is needed to see it.
    const Descriptor other(openat(folder_.Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return flock(other.Get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

Descriptor MeetingPlace::Accept() const {
    Descriptor connection(accept4(socket_.Get(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC));
    if (!connection || IsOfThisUser(connection)) return connection;
    errno = EACCES;
    return Descriptor();
}

Descriptor MeetingPlace::Connect() const {
    Descriptor connection = NewSocket();
    if (WithName(connect, connection, path_) != 0) return Descriptor();
    if (IsOfThisUser(connection)) return connection;
    errno = EACCES;
    return Descriptor();
}
