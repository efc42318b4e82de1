#include <windows.h>

#include <shellapi.h>

#include "base/basHelp.h"
#include "base/basText.h"

namespace {

// Results up to this number are errors.
constexpr INT_PTR kLastError = 32;

}  // namespace

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

bool OpenAddress(const std::wstring& address) {
    const HINSTANCE result =
        ShellExecuteA(nullptr, "open", ToAnsi(address).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(result) > kLastError;
}
