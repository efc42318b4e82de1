#include <windows.h>

#include <utility>

#include "base/ByteSource.h"

namespace {

std::error_code LastError() { return {static_cast<int>(GetLastError()), std::system_category()}; }

}  // namespace

void ByteSource::Open(const std::filesystem::path& file) {
    const HANDLE opened =
        CreateFileW(file.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    file_ = reinterpret_cast<std::intptr_t>(opened);
    LARGE_INTEGER size{};
    if (opened == INVALID_HANDLE_VALUE) failure_ = LastError();
    // CON, for one, is a file by its name only.
    else if (GetFileType(opened) != FILE_TYPE_DISK)
        failure_ = std::make_error_code(std::errc::invalid_argument);
    else if (!GetFileSizeEx(opened, &size))
        failure_ = LastError();
    else
        size_ = static_cast<std::uint64_t>(size.QuadPart);
    if (failure_) Close();
}

void ByteSource::Close() {
    if (file_ != -1) CloseHandle(reinterpret_cast<HANDLE>(std::exchange(file_, -1)));
}

std::size_t ByteSource::ReadAt(std::uint64_t place, char* bytes, std::size_t count) {
    OVERLAPPED where{};
    where.Offset = static_cast<DWORD>(place);
    where.OffsetHigh = static_cast<DWORD>(place >> 32);
    DWORD got = 0;
    if (!ReadFile(reinterpret_cast<HANDLE>(file_), bytes, static_cast<DWORD>(count), &got, &where) &&
        GetLastError() != ERROR_HANDLE_EOF)
        failure_ = LastError();
    return got;
}
