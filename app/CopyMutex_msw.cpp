#include "app/CopyMutex_msw.h"

#include <sddl.h>

#include <cstddef>
#include <vector>

namespace {

// The security identifier of this process's user as text; empty when Windows does not tell it.
std::wstring User() {
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) return {};
    DWORD size = 0;
    GetTokenInformation(token, TokenUser, nullptr, 0, &size);
    std::vector<std::byte> bytes(size);
    wchar_t* text = nullptr;
    if (GetTokenInformation(token, TokenUser, bytes.data(), size, &size))
        ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(bytes.data())->User.Sid, &text);
    CloseHandle(token);
    const std::wstring user = text ? text : L"";
    LocalFree(text);
    return user;
}

}  // namespace

std::wstring CopyMutexName() { return L"Global\\Kivora." + User(); }

HANDLE ClaimCopyMutex(bool& none) {
    // Left to itself Windows would let only administrators near the mutex of a copy with their rights.
    const std::wstring whom = L"D:(A;;GA;;;" + User() + L")(A;;GA;;;SY)";
    SECURITY_ATTRIBUTES attributes{sizeof attributes, nullptr, FALSE};
    ConvertStringSecurityDescriptorToSecurityDescriptorW(whom.c_str(), SDDL_REVISION_1,
                                                         &attributes.lpSecurityDescriptor, nullptr);
    const HANDLE mutex = CreateMutexW(&attributes, FALSE, CopyMutexName().c_str());
    const DWORD error = GetLastError();
    LocalFree(attributes.lpSecurityDescriptor);
    none = !mutex && error != ERROR_ACCESS_DENIED;
    if (mutex && error == ERROR_ALREADY_EXISTS) {
        CloseHandle(mutex);
        return nullptr;
    }
    return mutex;
}

// One that may not be opened is there.
bool IsCopyMutexHeld() {
    const HANDLE mutex = OpenMutexW(SYNCHRONIZE, FALSE, CopyMutexName().c_str());
    if (!mutex) return GetLastError() == ERROR_ACCESS_DENIED;
    CloseHandle(mutex);
    return true;
}
