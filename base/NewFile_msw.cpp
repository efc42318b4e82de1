// Nothing is done to keep other users out: these files lie in the user's profile, where others cannot read.
#include <windows.h>

#include <algorithm>

#include "base/NewFile.h"

namespace {

std::error_code LastError() { return {static_cast<int>(GetLastError()), std::system_category()}; }

bool WriteAll(HANDLE file, std::string_view bytes) {
    constexpr std::size_t kMost = 1 << 20;
    while (!bytes.empty()) {
        DWORD written = 0;
        const auto count = static_cast<DWORD>(std::min(bytes.size(), kMost));
        if (!WriteFile(file, bytes.data(), count, &written, nullptr)) return false;
        bytes.remove_prefix(written);
    }
    return FlushFileBuffers(file);
}

}  // namespace

std::error_code WriteNewFile(const std::filesystem::path& file, std::string_view bytes) {
    const HANDLE made =
        CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (made == INVALID_HANDLE_VALUE) return LastError();
    std::error_code failed;
    if (!WriteAll(made, bytes)) failed = LastError();
    if (!CloseHandle(made) && !failed) failed = LastError();
    if (failed) DeleteFileW(file.c_str());
    return failed;
}

std::error_code MakeFolder(const std::filesystem::path& folder) {
    std::error_code failed;
    std::filesystem::create_directories(folder, failed);
    return failed;
}
