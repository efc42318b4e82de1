#include <windows.h>

#include <commctrl.h>
#include <wx/dcmemory.h>
#include <wx/menu.h>
#include <wx/settings.h>
#include <wx/window.h>

#include <algorithm>

#include "app/PopupMenu.h"
#include "dialogs/Wait.h"

namespace {

// What the item with the picture shows. Menus draw it while they are open, and only one is.
wxBitmap picture;
int pictureHeight = 0;

// Menus are narrower and wider than the picture: its right end stands at the right, and a column before that
// fills the room between the two.
constexpr int kRightEnd = 90;  // pixels on a screen of 96 dots an inch

// Windows tells the program one resolution for all screens.
template <class Measure>
Measure OnScreen(const Measure& pixels) {
    return wxWindow::FromDIP(pixels, nullptr);
}

// The picture on the ground of a menu, because it is copied to the screen without regard to transparency.
wxBitmap OnMenuGround(const wxBitmap& bitmap) {
    constexpr int kColours = 24;  // bits, so that there is no transparency
    wxBitmap opaque(bitmap.GetSize(), kColours);
    wxMemoryDC dc(opaque);
    dc.SetBackground(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_MENU)));
    dc.Clear();
    dc.DrawBitmap(bitmap, 0, 0);
    return opaque;
}

void DrawPicture(const DRAWITEMSTRUCT& item) {
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_MENU));
    if (!picture.IsOk()) return;
    const HDC source = CreateCompatibleDC(item.hDC);
    const HGDIOBJ before = SelectObject(source, picture.GetHBITMAP());
    const int left = item.rcItem.left, top = item.rcItem.top, height = item.rcItem.bottom - top;
    const int rightEnd = OnScreen(kRightEnd);
    const int right = std::max<int>(item.rcItem.right - rightEnd, left), end = picture.GetWidth() - rightEnd;
    StretchBlt(item.hDC, left, top, right - left, height, source, end - 1, 0, 1, height, SRCCOPY);
    BitBlt(item.hDC, left, top, std::min(right - left, end), height, source, 0, 0, SRCCOPY);
    BitBlt(item.hDC, right, top, item.rcItem.right - right, height, source, end, 0, SRCCOPY);
    SelectObject(source, before);
    DeleteDC(source);
}

// Stands before the procedure of the window that owns the open menu.
LRESULT CALLBACK OnMenuMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR) {
    if (message == WM_MEASUREITEM && wParam == 0) {
        auto* item = reinterpret_cast<MEASUREITEMSTRUCT*>(lParam);
        item->itemWidth = 0;
        item->itemHeight = static_cast<UINT>(pictureHeight);
        return TRUE;
    }
    if (message == WM_DRAWITEM && wParam == 0) {
        DrawPicture(*reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

}  // namespace

std::optional<int> OpenPopupMenu(wxWindow& owner, wxMenu& menu, std::optional<wxPoint> at) {
    constexpr UINT_PTR kProcedure = 1;
    const HWND window = owner.GetHandle();
    POINT place{};
    GetCursorPos(&place);
    if (at) place = {at->x, at->y};
    const HWND before = GetForegroundWindow();
    // Else the menu would stay when the user clicks elsewhere.
    SetForegroundWindow(window);
    const EndedWithWaits endedWithWaits([] { EndMenu(); });
    SetWindowSubclass(window, OnMenuMessage, kProcedure, 0);
    const int chosen = TrackPopupMenu(menu.GetHMenu(), TPM_RETURNCMD | TPM_RIGHTBUTTON, place.x, place.y, 0,
                                      window, nullptr);
    RemoveWindowSubclass(window, OnMenuMessage, kProcedure);
    PostMessageW(window, WM_NULL, 0, 0);
    // That window shows nothing. The note that had the keyboard goes on with it.
    DWORD process = 0;
    GetWindowThreadProcessId(before, &process);
    if (process == GetCurrentProcessId() && GetForegroundWindow() == window) SetForegroundWindow(before);
    if (chosen == 0) return std::nullopt;
    return chosen;
}

void AppendPicture(wxMenu& menu, int id, const wxBitmapBundle& bundle, int height) {
    const wxBitmap bitmap = bundle.GetBitmap(OnScreen(bundle.GetDefaultSize()));
    picture = bitmap.IsOk() ? OnMenuGround(bitmap) : wxNullBitmap;
    pictureHeight = OnScreen(height);
    menu.Append(id, L" ");
    // A separator that draws itself: neither keys nor the mouse choose it.
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_FTYPE | MIIM_STATE;
    info.fType = MFT_OWNERDRAW | MFT_SEPARATOR;
    info.fState = MFS_DISABLED;
    SetMenuItemInfoW(menu.GetHMenu(), static_cast<UINT>(id), FALSE, &info);
}
