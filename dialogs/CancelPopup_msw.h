#pragma once
// Ends a dialog of the system's that waits in a loop of its own.

#include <windows.h>

inline void CancelPopupOf(HWND owner) {
    const HWND popup = GetLastActivePopup(owner);
    if (popup != owner) PostMessageW(popup, WM_COMMAND, IDCANCEL, 0);
}
