#include "dialogs/NativeKeys_unix.h"

#include <wx/window.h>

namespace {

int KeyCode(guint pressed) {
    constexpr struct {
        guint pressed;
        int code;
    } kKeys[] = {
        {GDK_KEY_Escape, WXK_ESCAPE},
        {GDK_KEY_F1, WXK_F1},
        {GDK_KEY_Return, WXK_RETURN},
        {GDK_KEY_KP_Enter, WXK_NUMPAD_ENTER},
        {GDK_KEY_Delete, WXK_DELETE},
        {GDK_KEY_KP_Delete, WXK_DELETE},
        {GDK_KEY_Up, WXK_UP},
        {GDK_KEY_Page_Down, WXK_PAGEDOWN},
        {GDK_KEY_Page_Up, WXK_PAGEUP},
        {GDK_KEY_Tab, WXK_TAB},
        {GDK_KEY_ISO_Left_Tab, WXK_TAB},
    };
    for (const auto& key : kKeys) {
        if (key.pressed == pressed) return key.code;
    }
    const guint capital = gdk_keyval_to_upper(pressed);
    return capital >= GDK_KEY_A && capital <= GDK_KEY_Z ? static_cast<int>(capital) : 0;
}

}  // namespace

bool PassKey(wxWindow& window, const GdkEventKey& key) {
    const int code = KeyCode(key.keyval);
    if (code == 0) return false;
    wxKeyEvent event(wxEVT_CHAR_HOOK);
    event.m_keyCode = code;
    event.SetControlDown((key.state & GDK_CONTROL_MASK) != 0);
    event.SetShiftDown((key.state & GDK_SHIFT_MASK) != 0);
    event.SetAltDown((key.state & GDK_MOD1_MASK) != 0);
    event.SetEventObject(&window);
    return window.ProcessWindowEvent(event);
}
