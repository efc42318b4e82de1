// Nothing is done to keep other users out: these files lie in the user's profile, where others cannot read.
#include <windows.h>

#include <algorithm>
#include <string>
#include <utility>

#include "base/NewFile.h"

namespace fs = std::filesystem;

namespace {

std::error_code Error(DWORD number) { return {static_cast<int>(number), std::system_category()}; }
std::error_code LastError() { return Error(GetLastError()); }

constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A file that is open while this object lives.
class Opened {
  public:
    Opened() = default;
    Opened(const fs::path& path, DWORD rights, DWORD sharing, DWORD how)
        : file_(CreateFileW(path.c_str(), rights, sharing, nullptr, how, FILE_ATTRIBUTE_NORMAL, nullptr)) {}
    ~Opened() { Close(); }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;

    explicit operator bool() const { return file_ != INVALID_HANDLE_VALUE; }
    HANDLE Handle() const { return file_; }

    std::error_code Close() {
        const HANDLE file = std::exchange(file_, INVALID_HANDLE_VALUE);
        return file == INVALID_HANDLE_VALUE || CloseHandle(file) ? std::error_code() : LastError();
    }

  private:
    HANDLE file_ = INVALID_HANDLE_VALUE;
};

std::error_code WriteAll(const Opened& file, std::string_view bytes) {
    constexpr std::size_t kMost = 1 << 20;
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(std::min(bytes.size(), kMost));
        if (!WriteFile(file.Handle(), bytes.data(), count, &written, nullptr)) return LastError();
        bytes.remove_prefix(written);
    }
    return {};
}

std::error_code BringToDisk(const Opened& file) {
    return FlushFileBuffers(file.Handle()) ? std::error_code() : LastError();
}

std::error_code MoveTo(const Opened& file, std::int64_t place) {
    LARGE_INTEGER from;
    from.QuadPart = place;
    return SetFilePointerEx(file.Handle(), from, nullptr, FILE_BEGIN) ? std::error_code() : LastError();
}

std::error_code CutAt(const Opened& file, std::int64_t size) {
    const std::error_code failed = MoveTo(file, size);
    return failed || SetEndOfFile(file.Handle()) ? failed : LastError();
}

std::error_code CopyRest(const Opened& old, std::size_t from, const Opened& to) {
    std::string block(1 << 16, '\0');
    std::error_code failed = MoveTo(old, static_cast<std::int64_t>(from));
    for (DWORD got = 1; !failed && got > 0;) {
        if (ReadFile(old.Handle(), block.data(), static_cast<DWORD>(block.size()), &got, nullptr))
            failed = WriteAll(to, std::string_view(block).substr(0, got));
        else
            failed = LastError();
    }
    return failed;
}

std::error_code WriteInPlace(const Opened& old, std::string_view bytes, Rest rest) {
    LARGE_INTEGER before{};
    if (!GetFileSizeEx(old.Handle(), &before)) return LastError();
    const auto size = static_cast<std::int64_t>(bytes.size());
    // The room comes first: a full disk is noticed before anything has changed.
    std::error_code failed = size > before.QuadPart ? CutAt(old, size) : std::error_code();
    if (!failed) failed = MoveTo(old, 0);
    if (!failed) failed = WriteAll(old, bytes);
    if (!failed && rest == Rest::Cut) failed = CutAt(old, size);
    return failed ? failed : BringToDisk(old);
}

// Where a path leads to; the path itself when it is no link, or leads nowhere.
fs::path BehindLinks(const fs::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || !(attributes & FILE_ATTRIBUTE_REPARSE_POINT)) return path;
    const Opened opened(path, 0, kShared, OPEN_EXISTING);
    std::wstring name(32768, L'\0');
    const DWORD size = opened ? GetFinalPathNameByHandleW(opened.Handle(), name.data(),
                                                          static_cast<DWORD>(name.size()), VOLUME_NAME_DOS)
                              : 0;
    if (size == 0 || size >= name.size()) return path;
    name.resize(size);
    return name;
}

// The new file gets the name of the old one, with its rights and attributes.
std::error_code TakeName(const fs::path& finished, const fs::path& file) {
    const bool exists = GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES;
    if (exists && ReplaceFileW(file.c_str(), finished.c_str(), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS,
                               nullptr, nullptr)) {
        const Opened replaced(file, GENERIC_WRITE, kShared, OPEN_EXISTING);
        return replaced ? BringToDisk(replaced) : std::error_code();
    }
    const std::error_code failed = LastError();
    if (GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES) return failed;
    return MoveFileExW(finished.c_str(), file.c_str(), MOVEFILE_WRITE_THROUGH) ? std::error_code()
                                                                               : LastError();
}

// Replaces the file, or makes it where `old` is not open.
std::error_code Replace(const fs::path& file, Opened& old, std::string_view bytes, Rest rest) {
    const fs::path unfinished = file.parent_path() / UnfinishedName();
    Opened made(unfinished, GENERIC_WRITE, 0, CREATE_NEW);
    if (!made) return LastError();
    std::error_code failed = WriteAll(made, bytes);
    if (!failed && old && rest == Rest::Keep) failed = CopyRest(old, bytes.size(), made);
    if (!failed) failed = BringToDisk(made);
    if (const std::error_code closed = made.Close(); !failed) failed = closed;
    old.Close();
    if (!failed) failed = TakeName(unfinished, file);
    if (failed) DeleteFileW(unfinished.c_str());
    return failed;
}

bool IsForbidden(const std::error_code& failed) {
    for (const DWORD number : {ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION, ERROR_UNABLE_TO_REMOVE_REPLACED,
                               ERROR_UNABLE_TO_MOVE_REPLACEMENT, ERROR_NOT_SUPPORTED})
        if (failed == Error(number)) return true;
    return false;
}

}  // namespace

std::error_code WriteNewFile(const fs::path& file, std::string_view bytes) {
    Opened made(file, GENERIC_WRITE, 0, CREATE_NEW);
    if (!made) return LastError();
    std::error_code failed = WriteAll(made, bytes);
    if (!failed) failed = BringToDisk(made);
    if (const std::error_code closed = made.Close(); !failed) failed = closed;
    if (failed) DeleteFileW(file.c_str());
    return failed;
}

std::error_code SaveFile(const fs::path& file, std::string_view bytes, Rest rest) {
    const fs::path target = BehindLinks(file);
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES && GetLastError() != ERROR_FILE_NOT_FOUND) return LastError();
    const auto open = [&] { return Opened(target, GENERIC_READ | GENERIC_WRITE, kShared, OPEN_EXISTING); };
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        Opened none;
        return Replace(target, none, bytes, rest);
    }
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) return std::make_error_code(std::errc::is_a_directory);
    // Only who may write to a file may replace it.
    Opened old = open();
    if (!old) return LastError();
    // CON, for one, is a file by its name only.
    if (GetFileType(old.Handle()) != FILE_TYPE_DISK) return std::make_error_code(std::errc::invalid_argument);
    const std::error_code failed = Replace(target, old, bytes, rest);
    if (!IsForbidden(failed)) return failed;
    const Opened again = open();
    return again ? WriteInPlace(again, bytes, rest) : LastError();
}

std::error_code PutInPlace(const fs::path& finished, const fs::path& file) {
    Opened opened(finished, GENERIC_WRITE, 0, OPEN_EXISTING);
    std::error_code failed = opened ? BringToDisk(opened) : LastError();
    opened.Close();
    if (!failed) failed = TakeName(finished, file);
    if (failed) DeleteFileW(finished.c_str());
    return failed;
}

std::error_code MakeFolder(const fs::path& folder) {
    std::error_code failed;
    fs::create_directories(folder, failed);
    return failed;
}
