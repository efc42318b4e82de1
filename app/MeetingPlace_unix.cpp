#include "app/MeetingPlace_unix.h"

#include <fcntl.h>
#include <glib.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>

#include "base/DataFolder.h"

namespace {

const char* const kSocketName = "socket";

// The folder, created when missing; nothing unless it is a real folder of this user.
Descriptor OpenPrivateFolder(const std::string& path) {
    mkdir(path.c_str(), 0700);
    Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status {};
    if (!folder || fstat(folder.Get(), &status) != 0 || status.st_uid != geteuid()) return Descriptor();
    if ((status.st_mode & 0777) != 0700 && fchmod(folder.Get(), 0700) != 0) return Descriptor();
    return folder;
}

Descriptor OpenDataFolder() {
    const std::string data = DataFolder().string();
    return Descriptor(data.empty() ? -1 : open(data.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
}

Descriptor OpenMeetingFolder() {
    if (const std::string data = DataFolder().string(); !data.empty()) {
        g_mkdir_with_parents(data.c_str(), 0700);
        if (Descriptor folder = OpenPrivateFolder(data + "/running")) return folder;
    }
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (runtime && runtime[0] == '/') {
        if (Descriptor folder = OpenPrivateFolder(std::string(runtime) + "/kivora")) return folder;
    }
    return OpenPrivateFolder("/tmp/kivora-" + std::to_string(geteuid()));
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

MeetingPlace::MeetingPlace() : folder_(OpenMeetingFolder()), data_(OpenDataFolder()) {}

bool MeetingPlace::Lock() {
    // Somebody who only looks whether the folder is locked has it for a moment, too.
    for (int attempt = 0; attempt < 4; ++attempt) {
        if (attempt > 0) std::this_thread::sleep_for(std::chrono::milliseconds(10));
        if (TakeLock(folder_) && TakeLock(data_)) return true;
    }
    return false;
}

bool MeetingPlace::IsLocked() const {
    for (const Descriptor* const folder : {&folder_, &data_}) {
        // The lock belongs to the opening of the folder, so an opening of its own is needed to see it.
        const Descriptor other(openat(folder->Get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (flock(other.Get(), LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK) return true;
    }
    return false;
}

sockaddr_un MeetingPlace::SocketAddress() const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::snprintf(address.sun_path, sizeof address.sun_path, "/proc/self/fd/%d/%s", folder_.Get(),
                  kSocketName);
    return address;
}

void MeetingPlace::RemoveSocket() const { unlinkat(folder_.Get(), kSocketName, 0); }
