// Names of files are text in Windows (UTF-16), so nothing has to be converted.
#include <windows.h>

#include "base/ExecutableFileName.h"
#include "base/FileName.h"
#include "base/ShortFileName_msw.h"
#include "base/Text.h"

std::wstring FileName(const std::filesystem::path& path) { return path.native(); }

std::filesystem::path FilePath(const std::wstring& name) { return name; }

std::string FileNameBytes(const std::wstring& name) { return ToUtf8(name); }

std::wstring FileNameOfBytes(std::string_view bytes) { return FromUtf8(bytes); }

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

std::wstring NameInCodePage(const std::wstring& name) {
    if (FromAnsi(ToAnsi(name)) == name) return name;
    std::wstring shortName(GetShortPathNameW(name.c_str(), nullptr, 0), L'\0');
    shortName.resize(GetShortPathNameW(name.c_str(), shortName.data(), static_cast<DWORD>(shortName.size())));
    return shortName.empty() ? name : shortName;
}

std::wstring RegisteredProgram() {
    return NameInCodePage(ExecutableFileName(ProgramFolder(), FileName(FilePath(ProgramPath()).filename())));
}
