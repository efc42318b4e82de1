#pragma once
// For file and printer dialogs, which Windows runs in a loop of its own: quitting the program has to end
// them.

#include <windows.h>

// Presses Cancel in the dialog that this window owns and that was used last; does nothing without one.
inline void CancelPopupOf(HWND owner) {
    const HWND popup = GetLastActivePopup(owner);
    if (popup != owner) PostMessageW(popup, WM_COMMAND, IDCANCEL, 0);
}
