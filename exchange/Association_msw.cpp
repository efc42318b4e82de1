// Most users may not write what is registered for all of them. The shell looks into what is registered for
// the user first.
#include <windows.h>

#include <shlobj.h>

#include "base/FileName.h"
#include "exchange/Association.h"

namespace {

std::wstring ValueOf(const wchar_t* key) {
    wchar_t text[1024] = L"";
    DWORD size = sizeof text;
    RegGetValueW(HKEY_CLASSES_ROOT, key, nullptr, RRF_RT_REG_SZ, nullptr, text, &size);
    return text;
}

}  // namespace

void RegisterWithDesktop(bool changed) {
    // A name with characters that the code page lacks came to the registry with others in their place.
    for (const AssociationEntry& entry : AssociationEntries(RegisteredProgram())) {
        if (ValueOf(entry.key) == entry.value) continue;
        const std::wstring key = std::wstring(L"Software\\Classes\\") + entry.key;
        RegSetKeyValueW(HKEY_CURRENT_USER, key.c_str(), nullptr, REG_SZ, entry.value.c_str(),
                        static_cast<DWORD>((entry.value.size() + 1) * sizeof(wchar_t)));
        changed = true;
    }
    if (changed) SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
}
