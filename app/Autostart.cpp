#include "app/Autostart.h"

#include "base/FileName.h"
#include "notes/NoteStore.h"
#include "registry/clsRegistry.h"
#include "tray/Notification.h"

namespace {

const wchar_t* const kRunValue = L"HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\\Kivora";

KeepResult Enter(bool enable) { return enable ? EnterInSession() : RemoveFromSession(); }

}  // namespace

KeepResult SetAutostart(NoteStore& store, bool enable) {
    if (KeepResult session = Enter(enable); !session.Kept()) return session;
    RegistryTransaction writing;
    if (enable)
        Registry().SetValue(kRunValue, REG_TYPE_SZ, RegisteredProgram());
    else
        Registry().DeleteValue(kRunValue);
    KeepResult entered = writing.Commit();
    // Ordinary users of Windows may not write that value, and do not need it.
    if (!entered.Kept() && StartsWithSession(!enable) != enable) {
        Enter(!enable);  // back to what the flag says
        return entered;
    }
    store.AutostartEnabled = enable;
    Notification::MenusChanged();
    return {};
}
