// Names of files are text in Windows (UTF-16), so nothing has to be converted.
#include <windows.h>

#include "base/FileName.h"

std::wstring FileName(const std::filesystem::path& path) { return path.native(); }

std::filesystem::path FilePath(const std::wstring& name) { return name; }

// std::filesystem::absolute takes the computer in "\\computer\folder" for a folder.
std::wstring AbsoluteFileName(const std::wstring& name) {
    std::wstring absolute(GetFullPathNameW(name.c_str(), 0, nullptr, nullptr), L'\0');
    const auto room = static_cast<DWORD>(absolute.size());
    absolute.resize(GetFullPathNameW(name.c_str(), room, absolute.data(), nullptr));
    return absolute.empty() ? name : absolute;
}

std::wstring ProgramPath() {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const auto room = static_cast<DWORD>(path.size());
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), room);
        if (length < room) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}
