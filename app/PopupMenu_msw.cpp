#include <windows.h>

#include <wx/menu.h>
#include <wx/window.h>

#include "app/PopupMenu.h"
#include "base/basWait.h"

std::optional<int> OpenPopupMenu(wxWindow& owner, wxMenu& menu, std::optional<wxPoint> at) {
    const HWND window = owner.GetHandle();
    POINT place{};
    GetCursorPos(&place);
    if (at) place = {at->x, at->y};
    // Else the menu would stay when the user clicks elsewhere.
    SetForegroundWindow(window);
    const EndedWithWaits endedWithWaits([] { EndMenu(); });
    const int chosen = TrackPopupMenu(menu.GetHMenu(), TPM_RETURNCMD | TPM_RIGHTBUTTON, place.x, place.y, 0,
                                      window, nullptr);
    PostMessageW(window, WM_NULL, 0, 0);
    if (chosen == 0) return std::nullopt;
    return chosen;
}

void AppendPicture(wxMenu& menu, int id, const wxBitmapBundle& picture, int) {
    wxMenuItem* item = menu.Append(id, L" ");
    // Lives as long as any menu shows it.
    static wxBitmap bitmap;
    bitmap = picture.GetBitmap(wxDefaultSize);
    if (!bitmap.IsOk()) return;
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_FTYPE | MIIM_BITMAP | MIIM_STATE;
    info.fType = MFT_STRING;
    info.hbmpItem = bitmap.GetHBITMAP();
    info.fState = MFS_DISABLED;
    SetMenuItemInfoW(menu.GetHMenu(), static_cast<UINT>(item->GetId()), FALSE, &info);
}
