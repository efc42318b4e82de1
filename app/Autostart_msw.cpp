// The list of the user's own: that of the computer only an administrator may write.
#include <windows.h>

#include "app/Autostart.h"
#include "base/FileName.h"
#include "registry/WindowsResult_msw.h"

namespace {

const wchar_t* const kRun = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
// Where the task manager keeps what the user has switched off there: a record whose first byte is odd.
const wchar_t* const kSwitchedOff =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved\\Run";
const wchar_t* const kName = L"Kivora";

bool IsEntered(HKEY root) {
    if (RegGetValueW(root, kRun, kName, RRF_RT_REG_SZ, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
        return false;
    BYTE record[64]{};
    DWORD size = sizeof record;
    RegGetValueW(root, kSwitchedOff, kName, RRF_RT_REG_BINARY, nullptr, record, &size);
    return record[0] % 2 == 0;
}

KeepResult Removed(const wchar_t* key) {
    const LSTATUS result = RegDeleteKeyValueW(HKEY_CURRENT_USER, key, kName);
    return result == ERROR_FILE_NOT_FOUND ? KeepResult() : ResultOf(result);
}

}  // namespace

KeepResult EnterInSession() {
    const std::wstring program = L'"' + ProgramPath() + L'"';
    const auto bytes = static_cast<DWORD>((program.size() + 1) * sizeof(wchar_t));
    const KeepResult entered =
        ResultOf(RegSetKeyValueW(HKEY_CURRENT_USER, kRun, kName, REG_SZ, program.c_str(), bytes));
    return entered.Kept() ? Removed(kSwitchedOff) : entered;
}

KeepResult RemoveFromSession() { return Removed(kRun); }

bool StartsWithSession(bool) { return IsEntered(HKEY_CURRENT_USER) || IsEntered(HKEY_LOCAL_MACHINE); }
