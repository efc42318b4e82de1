#include <windows.h>

#include <wx/listbox.h>

#include "tests/support/Dialogs.h"

void Click(wxListBox& list, int row) {
    const HWND rows = list.GetHandle();
    RECT place{};
    SendMessageW(rows, LB_SETTOPINDEX, static_cast<WPARAM>(row), 0);
    SendMessageW(rows, LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    const LPARAM point = MAKELPARAM(place.left + 2, (place.top + place.bottom) / 2);
    SendMessageW(rows, WM_LBUTTONDOWN, MK_LBUTTON, point);
    SendMessageW(rows, WM_LBUTTONUP, 0, point);
}
