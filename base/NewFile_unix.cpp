#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <utility>

#include "base/NewFile.h"

namespace fs = std::filesystem;

namespace {

std::error_code Error(int number) { return {number, std::generic_category()}; }
std::error_code LastError() { return Error(errno); }

// A file that is open while this object lives.
class Opened {
  public:
    Opened(const fs::path& path, int flags, mode_t mode = 0)
        : file_(open(path.c_str(), flags | O_CLOEXEC, mode)) {}
    ~Opened() {
        if (file_ >= 0) close(file_);
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;

    explicit operator bool() const { return file_ >= 0; }
    int Handle() const { return file_; }

    // Some file systems tell only now what they could not write.
    std::error_code Close() {
        const int result = close(std::exchange(file_, -1));
        return result == 0 ? std::error_code() : LastError();
    }

  private:
    int file_;
};

std::error_code WriteAll(const Opened& file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file.Handle(), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return LastError();
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return {};
}

std::error_code BringToDisk(const Opened& file) {
    return fsync(file.Handle()) == 0 ? std::error_code() : LastError();
}

// A new name is on the disk once its folder has been synchronized. Some file systems cannot do that for
// folders, and one that may not be read cannot be opened; then the name is kept with the file system's next
// write, which is all that there is.
std::error_code KeepName(const fs::path& path) {
    const fs::path folder = path.has_parent_path() ? path.parent_path() : ".";
    const Opened opened(folder, O_RDONLY | O_DIRECTORY);
    if (!opened || fsync(opened.Handle()) == 0) return {};
    return errno == EIO || errno == ENOSPC || errno == EDQUOT ? LastError() : std::error_code();
}

std::error_code TakeName(const fs::path& finished, const fs::path& file) {
    return std::rename(finished.c_str(), file.c_str()) == 0 ? std::error_code() : LastError();
}

// Where a path leads to. A loop is left as it is; opening it says what is wrong.
fs::path BehindLinks(fs::path path) {
    constexpr int kMostLinks = 40;
    std::error_code none;
    for (int i = 0; i < kMostLinks; ++i) {
        const fs::path target = fs::read_symlink(path, none);
        if (none) break;
        path = path.parent_path() / target;
    }
    return path;
}

// Whether this is a name of the file. A failure when the disk does not say it.
std::error_code IsNameOf(const fs::path& path, const struct stat& file, bool& is) {
    struct stat status {};
    is = lstat(path.c_str(), &status) == 0;
    if (!is) return errno == ENOENT || errno == ENOTDIR ? std::error_code() : LastError();
    is = status.st_dev == file.st_dev && status.st_ino == file.st_ino;
    return {};
}

// All that the kernel asks when somebody wants to open a file: its owner, its mode, its list of rights.
std::error_code TakeRightsOf(const Opened& file, const Opened& old, const struct stat& status) {
    constexpr const char* kRights = "system.posix_acl_access";
    const auto hasNone = [] { return errno == ENODATA || errno == ENOTSUP; };
    char rights[4096];
    const ssize_t size = fgetxattr(old.Handle(), kRights, rights, sizeof rights);
    if (size < 0 && !hasNone()) return LastError();
    // The folder may have given it one.
    if (size < 0 && fremovexattr(file.Handle(), kRights) != 0 && !hasNone()) return LastError();
    if (fchown(file.Handle(), status.st_uid, status.st_gid) != 0 ||
        fchmod(file.Handle(), status.st_mode & 07777) != 0 ||
        (size > 0 && fsetxattr(file.Handle(), kRights, rights, static_cast<std::size_t>(size), 0) != 0))
        return LastError();
    return {};
}

std::error_code CopyRest(const Opened& old, std::size_t from, const Opened& to) {
    char block[1 << 16];
    for (auto at = static_cast<off_t>(from);;) {
        const ssize_t got = pread(old.Handle(), block, sizeof block, at);
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) return LastError();
        if (got == 0) return {};
        if (const std::error_code failed = WriteAll(to, {block, static_cast<std::size_t>(got)}))
            return failed;
        at += got;
    }
}

std::error_code WriteInPlace(const Opened& old, const struct stat& status, std::string_view bytes,
                             Rest rest) {
    const auto size = static_cast<off_t>(bytes.size());
    // The room comes first: a full disk is noticed before anything has changed.
    if (size > status.st_size) {
        const int failed = posix_fallocate(old.Handle(), status.st_size, size - status.st_size);
        if (failed != 0 && ftruncate(old.Handle(), status.st_size) == 0) return Error(failed);
        if (failed != 0) return LastError();
    }
    std::error_code failed = WriteAll(old, bytes);
    if (!failed && rest == Rest::Cut && ftruncate(old.Handle(), size) != 0) failed = LastError();
    return failed ? failed : BringToDisk(old);
}

// Replacing a file takes more than writing to it: its folder, its owner or its file system forbids that. A
// disk that takes no changes any more is another matter: it might stop in the middle of the old file.
bool IsForbidden(const std::error_code& failed) {
    for (const int number : {EACCES, EPERM, EBUSY, ENOTSUP, ENOSYS})
        if (failed.value() == number) return true;
    return false;
}

// Replaces the file, or makes it where `old` is not open.
std::error_code Replace(const fs::path& file, const Opened& old, const struct stat& status,
                        std::string_view bytes, Rest rest) {
    const fs::path unfinished = file.parent_path() / UnfinishedName();
    Opened made(unfinished, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, old ? 0600 : 0644);
    if (!made) return LastError();
    std::error_code failed = WriteAll(made, bytes);
    if (!failed && old && rest == Rest::Keep) failed = CopyRest(old, bytes.size(), made);
    if (!failed && old) failed = TakeRightsOf(made, old, status);
    if (!failed) failed = BringToDisk(made);
    if (const std::error_code closed = made.Close(); !failed) failed = closed;
    if (!failed) failed = TakeName(unfinished, file);
    if (!failed) return KeepName(file);
    unlink(unfinished.c_str());
    return failed;
}

}  // namespace

std::error_code WriteNewFile(const fs::path& file, std::string_view bytes) {
    Opened made(file, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, 0600);
    if (!made) return LastError();
    std::error_code failed = WriteAll(made, bytes);
    if (!failed) failed = BringToDisk(made);
    if (const std::error_code closed = made.Close(); !failed) failed = closed;
    if (!failed) failed = KeepName(file);
    if (failed) unlink(file.c_str());
    return failed;
}

std::error_code SaveFile(const fs::path& file, std::string_view bytes, Rest rest) {
    const fs::path target = BehindLinks(file);
    struct stat status {};
    const bool exists = stat(file.c_str(), &status) == 0;
    if (!exists && errno != ENOENT) return LastError();
    if (exists && !S_ISREG(status.st_mode)) return Error(S_ISDIR(status.st_mode) ? EISDIR : EINVAL);
    // Only who may write to a file may replace it.
    const Opened old(exists ? file : fs::path(), O_RDWR | O_NONBLOCK);
    if (exists && (!old || fstat(old.Handle(), &status) != 0)) return LastError();
    if (exists && !S_ISREG(status.st_mode)) return Error(EINVAL);
    // What /dev/stdout leads to need not have a name.
    bool named = true;
    std::error_code failed = exists ? IsNameOf(target, status, named) : std::error_code();
    if (failed) return failed;
    if (!named) return WriteInPlace(old, status, bytes, rest);
    failed = Replace(target, old, status, bytes, rest);
    return exists && IsForbidden(failed) ? WriteInPlace(old, status, bytes, rest) : failed;
}

std::error_code PutInPlace(const fs::path& finished, const fs::path& file) {
    const Opened opened(finished, O_RDONLY);
    std::error_code failed = opened ? BringToDisk(opened) : LastError();
    if (!failed) failed = TakeName(finished, file);
    if (!failed) return KeepName(file);
    unlink(finished.c_str());
    return failed;
}

std::error_code MakeFolder(const fs::path& folder) {
    std::error_code failed;
    if (fs::is_directory(folder, failed)) return {};
    const fs::path above = folder.parent_path();
    if (above != folder) failed = MakeFolder(above);
    if (failed) return failed;
    if (mkdir(folder.c_str(), 0700) == 0) return KeepName(folder);
    const std::error_code refused = LastError();
    // Another program may have made it meanwhile.
    return fs::is_directory(folder, failed) ? std::error_code() : refused;
}
