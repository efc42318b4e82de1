#include "app/Autostart.h"

#include "notes/NoteStore.h"
#include "registry/clsRegistry.h"
#include "tray/Notification.h"

namespace {
const wchar_t* const kRunValue = L"HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\\Kivora";
}

KeepResult SetAutostart(NoteStore& store, bool enable) {
    RegistryTransaction writing;
    KeepResult session;
    if (enable) {
        const std::wstring fileName = AutostartFileName();
        Registry().SetValue(kRunValue, REG_TYPE_SZ, fileName);
        session = EnterInSession(fileName);
    } else {
        Registry().DeleteValue(kRunValue);
        session = RemoveFromSession();
    }
    if (!session.Kept()) return session;
    if (KeepResult entered = writing.Commit(); !entered.Kept()) {
        // Back to what the flag says.
        if (enable)
            RemoveFromSession();
        else
            EnterInSession(AutostartFileName());
        return entered;
    }
    store.AutostartEnabled = enable;
    Notification::MenusChanged();
    return {};
}
