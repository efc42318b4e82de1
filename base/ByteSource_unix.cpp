#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "base/ByteSource.h"

namespace {

std::error_code LastError() { return {errno, std::generic_category()}; }

}  // namespace

void ByteSource::Open(const std::filesystem::path& file) {
    // A pipe is not waited for, and a terminal does not become this process's own.
    constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NOCTTY;
    int opened = open(file.c_str(), kFlags | O_NONBLOCK);
    // A file server has a lease on this regular file, and is asked to give it back.
    if (opened < 0 && errno == EWOULDBLOCK) opened = open(file.c_str(), kFlags);
    file_ = opened;
    struct stat status {};
    if (opened < 0 || fstat(opened, &status) != 0)
        failure_ = LastError();
    else if (!S_ISREG(status.st_mode))
        failure_ = std::make_error_code(std::errc::invalid_argument);
    else
        size_ = static_cast<std::uint64_t>(status.st_size);
    if (failure_) Close();
}

void ByteSource::Close() {
    if (file_ != -1) close(static_cast<int>(std::exchange(file_, -1)));
}

std::size_t ByteSource::ReadAt(std::uint64_t place, char* bytes, std::size_t count) {
    ssize_t got;
    do {
        got = pread(static_cast<int>(file_), bytes, count, static_cast<off_t>(place));
    } while (got < 0 && errno == EINTR);
    if (got < 0) failure_ = LastError();
    return got < 0 ? 0 : static_cast<std::size_t>(got);
}
