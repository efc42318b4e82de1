#include <windows.h>

#include <shellapi.h>

#include "dialogs/OpenAddress.h"

namespace {

// Results up to this number are errors.
constexpr INT_PTR kLastError = 32;

}  // namespace

bool OpenAddress(const std::wstring& address) {
    const HINSTANCE result =
        ShellExecuteW(nullptr, L"open", address.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(result) > kLastError;
}
