#include "tests/faults/FileCalls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <map>

namespace {

struct Watch {
    std::string folder;  // with a slash at its end; empty while nothing is watched
    Fault fault;
    FileWatcher watcher;
    std::atomic<std::int64_t> count = 0;
    std::atomic<bool> came = false;
};
Watch watch;

// The function of the C library that one of ours hides.
template <class Function>
Function* Real(const char* name, Function*) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
#define REAL(name)                                     \
    ([] {                                              \
        static const auto real = Real(#name, &::name); \
        return real;                                   \
    }())

bool IsWatched(const char* path) {
    if (watch.folder.empty() || !path) return false;
    const std::string_view folder(watch.folder), name(path);
    return name.starts_with(folder) || name == folder.substr(0, folder.size() - 1);
}
bool IsWatched(int file) {
    char path[PATH_MAX] = {};
    const std::string link = "/proc/self/fd/" + std::to_string(file);
    return !watch.folder.empty() && readlink(link.c_str(), path, sizeof path - 1) > 0 && IsWatched(path);
}

bool Extends(int file, std::int64_t offset, std::size_t size) {
    struct stat status {};
    return REAL(fstat)(file, &status) != 0 || offset + static_cast<std::int64_t>(size) > status.st_size;
}

// Whether a lasting state that brings this error brings it to such a call, too.
bool Meets(int error, CallKind kind, bool changes) {
    const bool full = error == ENOSPC || error == EDQUOT || error == EROFS;
    return (changes || !full) && std::ranges::count(ErrorsOf(kind), error) > 0;
}

[[noreturn]] void Die() {
    watch.folder.clear();
    if (watch.watcher.dying) watch.watcher.dying();
    kill(getpid(), SIGKILL);
    for (;;) pause();
}

// One call below the folder, from its beginning to its end.
class Call {
  public:
    Call(CallKind kind, bool changes) : kind_(kind) {
        const std::int64_t number = ++watch.count;
        const bool now = number == watch.fault.at;
        if (now) watch.came = true;
        switch (watch.fault.kind) {
            case Fault::KillBefore:
                if (now) Die();
                break;
            case Fault::KillInside:
                half_ = now;
                break;
            case Fault::FailOnce:
                fails_ = now;
                break;
            case Fault::FailForGood:
                fails_ = now || (number > watch.fault.at && Meets(watch.fault.error, kind, changes));
                break;
            default:
                break;
        }
    }
    // True when the kernel is not asked, and errno says why.
    bool Fails() const {
        if (fails_) errno = watch.fault.error;
        return fails_;
    }
    // Of so many bytes, how many are written before the fault.
    std::size_t Written(std::size_t size) const { return half_ || fails_ ? size / 2 : size; }

    // The call has returned. The caller reads errno after it.
    template <class Result>
    Result Ended(Result result, int file = -1, int flags = 0) const {
        const int error = errno;
        if (watch.watcher.seen) {
            // What it does with files is no call of the program's.
            std::string folder;
            watch.folder.swap(folder);
            watch.watcher.seen({kind_, file, flags, result >= 0});
            watch.folder.swap(folder);
        }
        if (half_) Die();
        errno = error;
        return result;
    }

  private:
    CallKind kind_;
    bool fails_ = false, half_ = false;
};

template <class Ask>
int Named(CallKind kind, bool changes, const char* path, const Ask& ask) {
    if (!IsWatched(path)) return ask();
    const Call call(kind, changes);
    return call.Ended(call.Fails() ? -1 : ask());
}

template <class Ask>
int Opened(const char* path, int flags, const Ask& ask) {
    if (!IsWatched(path)) return ask();
    const Call call(CallKind::Open, (flags & O_CREAT) && REAL(access)(path, F_OK) != 0);
    const int file = call.Fails() ? -1 : ask();
    return call.Ended(file, file, flags);
}

FILE* OpenedStream(const char* path, const char* mode, FILE* (*ask)(const char*, const char*)) {
    FILE* stream = nullptr;
    const int flags = *mode == 'r' ? 0 : O_CREAT | (*mode == 'w' ? O_TRUNC : 0);
    Opened(path, flags, [&] {
        stream = ask(path, mode);
        return stream ? fileno(stream) : -1;
    });
    return stream;
}

template <class Write>
ssize_t Written(int file, std::size_t size, std::int64_t offset, const Write& write) {
    if (!IsWatched(file)) return write(size);
    const Call call(CallKind::Write, Extends(file, offset, size));
    const std::size_t part = call.Written(size);
    // A disk that is getting full takes a part; the rest of it fails.
    const ssize_t written = part > 0 || size == 0 ? write(part) : 0;
    return call.Ended(call.Fails() ? -1 : written);
}

std::int64_t Position(int file) { return IsWatched(file) ? lseek(file, 0, SEEK_CUR) : 0; }

template <class Ask>
auto OfOpen(CallKind kind, bool changes, int file, const Ask& ask) -> decltype(ask()) {
    if (!IsWatched(file)) return ask();
    const Call call(kind, changes);
    return call.Ended(call.Fails() ? -1 : ask(), file);
}

}  // namespace

const std::vector<int>& ErrorsOf(CallKind kind) {
    static const std::map<CallKind, std::vector<int>> errors = {
        {CallKind::Open, {EACCES, EIO, ENOSPC, EROFS, EMFILE, EDQUOT}},
        {CallKind::Close, {EIO}},
        {CallKind::Read, {EIO}},
        {CallKind::Write, {ENOSPC, EIO, EDQUOT, EROFS}},
        {CallKind::Truncate, {EIO, EROFS}},
        {CallKind::Sync, {EIO, ENOSPC, EDQUOT}},
        {CallKind::Rename, {EIO, ENOSPC, EROFS, EACCES}},
        {CallKind::Link, {EIO, ENOSPC, EROFS, EACCES}},
        {CallKind::Remove, {EIO, EROFS, EACCES}},
        {CallKind::MakeFolder, {EIO, ENOSPC, EROFS, EACCES}},
        {CallKind::Rights, {EIO, EROFS}},
        {CallKind::Lock, {EAGAIN, ENOLCK}},
        {CallKind::Look, {EIO, EACCES}},
        {CallKind::Map, {ENOMEM}}};
    return errors.at(kind);
}

void WatchFiles(const std::string& folder, const Fault& fault, const FileWatcher& watcher) {
    watch.folder = folder + "/";
    watch.fault = fault;
    watch.watcher = watcher;
    watch.count = 0;
    watch.came = false;
}

void EndFault() { watch.fault = {}; }
bool FaultHasCome() { return watch.came; }

// The functions of the C library, by both names where one is for large files and both are called.
extern "C" {

#define OPEN(name)                                                                 \
    int name(const char* path, int flags, ...) {                                   \
        va_list rest;                                                              \
        va_start(rest, flags);                                                     \
        const mode_t mode = flags & O_CREAT ? va_arg(rest, mode_t) : 0;            \
        va_end(rest);                                                              \
        return Opened(path, flags, [&] { return REAL(name)(path, flags, mode); }); \
    }
OPEN(open)
OPEN(open64)

FILE* fopen(const char* path, const char* mode) { return OpenedStream(path, mode, REAL(fopen)); }
FILE* fopen64(const char* path, const char* mode) { return OpenedStream(path, mode, REAL(fopen64)); }

int fclose(FILE* stream) {
    const int result = OfOpen(CallKind::Close, false, fileno(stream), [] { return 0; });
    const int closed = REAL(fclose)(stream);
    return result == 0 ? closed : EOF;
}

int close(int file) {
    // It is closed whatever the answer.
    const int result = OfOpen(CallKind::Close, false, file, [] { return 0; });
    const int error = errno;
    const int closed = REAL(close)(file);
    if (result != 0) errno = error;
    return result == 0 ? closed : -1;
}

ssize_t read(int file, void* to, size_t size) {
    return OfOpen(CallKind::Read, false, file, [&] { return REAL(read)(file, to, size); });
}
ssize_t pread(int file, void* to, size_t size, off_t offset) {
    return OfOpen(CallKind::Read, false, file, [&] { return REAL(pread)(file, to, size, offset); });
}
ssize_t pread64(int file, void* to, size_t size, off64_t offset) {
    return OfOpen(CallKind::Read, false, file, [&] { return REAL(pread64)(file, to, size, offset); });
}

ssize_t write(int file, const void* bytes, size_t size) {
    return Written(file, size, Position(file),
                   [&](std::size_t part) { return REAL(write)(file, bytes, part); });
}
ssize_t pwrite64(int file, const void* bytes, size_t size, off64_t offset) {
    return Written(file, size, offset,
                   [&](std::size_t part) { return REAL(pwrite64)(file, bytes, part, offset); });
}
ssize_t writev(int file, const iovec* parts, int count) {
    if (!IsWatched(file)) return REAL(writev)(file, parts, count);
    std::string all;
    for (int i = 0; i < count; ++i) all.append(static_cast<const char*>(parts[i].iov_base), parts[i].iov_len);
    return write(file, all.data(), all.size());
}

int fsync(int file) {
    return OfOpen(CallKind::Sync, true, file, [] { return 0; });
}
int fdatasync(int file) {
    return OfOpen(CallKind::Sync, true, file, [] { return 0; });
}

#define TRUNCATE(name, offset)                                                                 \
    int name(int file, offset size) noexcept {                                                 \
        return OfOpen(CallKind::Truncate, true, file, [&] { return REAL(name)(file, size); }); \
    }
TRUNCATE(ftruncate, off_t)
TRUNCATE(ftruncate64, off64_t)

int rename(const char* from, const char* to) noexcept {
    return Named(CallKind::Rename, true, from, [&] { return REAL(rename)(from, to); });
}
int link(const char* from, const char* to) noexcept {
    return Named(CallKind::Link, true, from, [&] { return REAL(link)(from, to); });
}
int unlink(const char* path) noexcept {
    return Named(CallKind::Remove, true, path, [&] { return REAL(unlink)(path); });
}
int remove(const char* path) noexcept {
    return Named(CallKind::Remove, true, path, [&] { return REAL(remove)(path); });
}
int mkdir(const char* path, mode_t mode) noexcept {
    return Named(CallKind::MakeFolder, true, path, [&] { return REAL(mkdir)(path, mode); });
}
int chmod(const char* path, mode_t mode) noexcept {
    return Named(CallKind::Rights, true, path, [&] { return REAL(chmod)(path, mode); });
}
int fchmod(int file, mode_t mode) noexcept {
    return OfOpen(CallKind::Rights, true, file, [&] { return REAL(fchmod)(file, mode); });
}

int fcntl64(int file, int what, ...) {
    va_list rest;
    va_start(rest, what);
    void* const with = va_arg(rest, void*);
    va_end(rest);
    const auto ask = [&] { return REAL(fcntl64)(file, what, with); };
    // Nobody is refused to give a lock back.
    const bool locks = what == F_SETLK && static_cast<const struct flock*>(with)->l_type != F_UNLCK;
    return locks ? OfOpen(CallKind::Lock, false, file, ask) : ask();
}
int flock(int file, int what) noexcept {
    const auto ask = [&] { return REAL(flock)(file, what); };
    return what == LOCK_UN ? ask() : OfOpen(CallKind::Lock, false, file, ask);
}

int access(const char* path, int what) noexcept {
    return Named(CallKind::Look, false, path, [&] { return REAL(access)(path, what); });
}
#define LOOK(name, Status)                                                                   \
    int name(const char* path, struct Status* status) noexcept {                             \
        return Named(CallKind::Look, false, path, [&] { return REAL(name)(path, status); }); \
    }
LOOK(stat, stat)
LOOK(stat64, stat64)
LOOK(lstat, stat)
LOOK(lstat64, stat64)
#define LOOK_AT_OPEN(name, Status)                                                            \
    int name(int file, struct Status* status) noexcept {                                      \
        return OfOpen(CallKind::Look, false, file, [&] { return REAL(name)(file, status); }); \
    }
LOOK_AT_OPEN(fstat, stat)
LOOK_AT_OPEN(fstat64, stat64)

void* mmap64(void* at, size_t size, int rights, int flags, int file, off64_t offset) noexcept {
    void* place = MAP_FAILED;
    OfOpen(CallKind::Map, false, file, [&] {
        place = REAL(mmap64)(at, size, rights, flags, file, offset);
        return place == MAP_FAILED ? -1 : 0;
    });
    return place;
}
}
