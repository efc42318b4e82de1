// Names are text here already.
#include <windows.h>

#include "base/FileName.h"

std::wstring FileName(const std::filesystem::path& path) { return path.native(); }

std::filesystem::path FilePath(const std::wstring& name) { return name; }

// The library's own call takes the name of another computer for a folder.
std::wstring AbsoluteFileName(const std::wstring& name) {
    std::wstring absolute(GetFullPathNameW(name.c_str(), 0, nullptr, nullptr), L'\0');
    const auto room = static_cast<DWORD>(absolute.size());
    absolute.resize(GetFullPathNameW(name.c_str(), room, absolute.data(), nullptr));
    return absolute.empty() ? name : absolute;
}
