#include <windows.h>

#include <wx/toplevel.h>

#include "tests/support/Stacking.h"

bool IsOnScreen(const wxTopLevelWindow& window) { return IsWindowVisible(window.GetHandle()); }

bool StandsAbove(const wxTopLevelWindow& upper, const wxTopLevelWindow& lower) {
    if (!IsOnScreen(upper) || !IsOnScreen(lower)) return false;
    HWND below = upper.GetHandle();
    while (below && below != lower.GetHandle()) below = GetWindow(below, GW_HWNDNEXT);
    return below != nullptr;
}

bool IsKeptAbove(const wxTopLevelWindow& window) {
    return GetWindowLongPtrW(window.GetHandle(), GWL_EXSTYLE) & WS_EX_TOPMOST;
}
