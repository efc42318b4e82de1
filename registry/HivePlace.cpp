#include "registry/HivePlace.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <thread>

#include "base/NewFile.h"

namespace fs = std::filesystem;

namespace {

KeepResult LastFailure(const fs::path& path) { return SystemFailure(errno, path.filename().string()); }

void TakeRights(const fs::path& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && (status.st_mode & 077) != 0)
        (void)!chmod(path.c_str(), status.st_mode & 0700);
}

std::string Stamp() {
    char stamp[32];
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    std::strftime(stamp, sizeof stamp, "-%Y%m%d-%H%M%S", &local);
    return stamp;
}

}  // namespace

KeepResult SystemFailure(int error, const std::string& context) {
    KeepResult failure = FailureOf(std::error_code(error, std::generic_category()));
    failure.detail.insert(0, context + ": ");
    return failure;
}

fs::path Beside(const fs::path& file, const std::string& end) { return file.native() + end; }

KeepResult MakePrivateFolder(const fs::path& folder) {
    if (const std::error_code failed = MakeFolder(folder))
        return SystemFailure(failed.value(), folder.filename().string());
    TakeRights(folder);
    return {};
}

void MakePrivateFile(const fs::path& file) { TakeRights(file); }

KeepResult MakeEmptyFile(const fs::path& file) {
    unlink(file.c_str());
    const int made = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (made < 0) return LastFailure(file);
    close(made);
    return {};
}

KeepResult FindFile(const fs::path& path, fs::path& file) {
    file = path;
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0) return errno == ENOENT ? KeepResult{} : LastFailure(path);
    if (stat(path.c_str(), &status) != 0) {
        KeepResult failed = LastFailure(path);
        if (failed.code == ENOENT || failed.code == ELOOP) failed.failure = KeepFailure::DeadLink;
        return failed;
    }
    if (!S_ISREG(status.st_mode)) return {KeepFailure::NoFile, path.filename().string() + ": no file"};
    std::error_code failed;
    file = fs::canonical(path, failed);
    return failed ? SystemFailure(failed.value(), path.filename().string()) : KeepResult{};
}

FileIdentity IdentityOf(const fs::path& file) {
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) return {};
    return {status.st_dev, status.st_ino};
}

bool IsAnother(const fs::path& file, const FileIdentity& once) {
    if (once == FileIdentity{}) return false;
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) return errno == ENOENT || errno == ENOTDIR;
    return FileIdentity{status.st_dev, status.st_ino} != once;
}

bool ReadWhole(const fs::path& file, std::string& bytes) {
    constexpr std::size_t kBlock = 4096;
    bytes.clear();
    const int opened = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (opened < 0) return errno == ENOENT || errno == ENOTDIR;
    struct stat status {};
    int error = fstat(opened, &status) == 0 ? 0 : errno;
    bytes.resize(static_cast<std::size_t>(status.st_size));
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t size = std::min(kBlock - at % kBlock, bytes.size() - at);
        const ssize_t got = pread(opened, bytes.data() + at, size, static_cast<off_t>(at));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) error = errno;
        if (got == 0) bytes.resize(at);  // it was made shorter meanwhile
        at += got < 0 ? size : static_cast<std::size_t>(got);
    }
    close(opened);
    errno = error;
    return error == 0;
}

HiveLock::HiveLock(const fs::path& file, HiveDeadline deadline) {
    const fs::path name = Beside(file, ".lock");
    lock_ = open(name.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600);
    if (lock_ < 0) {
        result_ = LastFailure(name);
        return;
    }
    constexpr auto kPause = std::chrono::milliseconds(2);
    // A file system without locks refuses nobody.
    while (flock(lock_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
        if (std::chrono::steady_clock::now() + kPause > deadline) {
            result_ = {KeepFailure::Locked, "another program opens the file"};
            return;
        }
        std::this_thread::sleep_for(kPause);
    }
}

HiveLock::~HiveLock() {
    if (lock_ >= 0) close(lock_);
}

KeepResult BringToDisk(const fs::path& file) {
    const int opened = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (opened < 0) return LastFailure(file);
    const KeepResult result = fsync(opened) == 0 ? KeepResult() : LastFailure(file);
    close(opened);
    return result;
}

KeepResult PutHiveInPlace(const fs::path& finished, const fs::path& file) {
    const std::error_code failed = PutInPlace(finished, file);
    return failed ? SystemFailure(failed.value(), file.filename().string()) : KeepResult();
}

KeepResult SetAside(const fs::path& file, const std::string& word, fs::path& aside) {
    const std::string stamp = "." + word + Stamp();
    aside = Beside(file, stamp);
    for (int number = 2; link(file.c_str(), aside.c_str()) != 0; ++number) {
        if (errno == ENOENT) break;  // its log alone is there
        if (errno != EEXIST) {
            // File systems without such names can only move it.
            if (std::rename(file.c_str(), aside.c_str()) == 0) break;
            return LastFailure(aside);
        }
        aside = Beside(file, stamp + "-" + std::to_string(number));
    }
    const fs::path log = Beside(file, "-wal"), logAside = Beside(aside, "-wal");
    struct stat status {};
    if (stat(log.c_str(), &status) == 0 && status.st_size > 0) std::rename(log.c_str(), logAside.c_str());
    unlink(log.c_str());
    unlink(Beside(file, "-shm").c_str());  // SQLite makes it anew from the log
    if (lstat(aside.c_str(), &status) != 0) aside = logAside;
    return {};
}
