#include "app/Autostart.h"

#include "notes/NoteStore.h"
#include "registry/clsRegistry.h"
#include "tray/Notification.h"

namespace {
const wchar_t* const kRunValue = L"HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\\Kivora";
}

void SetAutostart(NoteStore& store, bool enable) {
    store.AutostartEnabled = enable;
    Notification::MenusChanged();
    if (enable) {
        const std::wstring fileName = AutostartFileName();
        Registry().SetValue(kRunValue, REG_TYPE_SZ, fileName);
        EnterInSession(fileName);
    } else {
        Registry().DeleteValue(kRunValue);
        RemoveFromSession();
    }
}
