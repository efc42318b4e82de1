#include <windows.h>

#include "model/NoteColor.h"
#include "model/NoteLayout.h"
#include "notes/NoteWindow.h"

namespace {

constexpr double kTwipsPerInch = 1440;
// All notes have one owner, a window of wxWidgets that keeps them out of the task bar. Without this Windows
// would move all of them with one, down from above other windows too.
constexpr UINT kOnlyHeight = SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE | SWP_NOOWNERZORDER;

// What the desktop says about itself.
int DesktopCaps(int index) {
    const HWND desktop = GetDesktopWindow();
    const HDC dc = GetDC(desktop);
    const int value = GetDeviceCaps(dc, index);
    ReleaseDC(desktop, dc);
    return value;
}

}  // namespace

double TwipsPerPixelX(const wxWindow&) {
    static const double twips = kTwipsPerInch / DesktopCaps(LOGPIXELSX);
    return twips;
}

double TwipsPerPixelY(const wxWindow&) {
    static const double twips = kTwipsPerInch / DesktopCaps(LOGPIXELSY);
    return twips;
}

int DisplayDepth() { return DesktopCaps(BITSPIXEL) * DesktopCaps(PLANES); }

std::int32_t DisplayColor(std::int32_t code) { return DisplayColor(code, DisplayDepth()); }

void ShapeNoteWindow(wxFrame& window, int widthPixels, int heightPixels) {
    const auto outline = NoteOutline(widthPixels, heightPixels, kTwipsPerUsualPixel / TwipsPerPixelX(window));
    POINT corners[outline.size()];
    for (std::size_t i = 0; i < outline.size(); ++i) corners[i] = {outline[i].x, outline[i].y};
    const HRGN region = CreatePolygonRgn(corners, static_cast<int>(outline.size()), ALTERNATE);
    // Windows owns the region from now on, unless the call failed.
    if (!SetWindowRgn(window.GetHandle(), region, TRUE)) DeleteObject(region);
}

void PlaceWindow(wxFrame& window, const wxRect& rect) { window.SetSize(rect, wxSIZE_ALLOW_MINUS_ONE); }

std::optional<wxRect> RectOnScreen(const wxFrame& window) {
    return window.IsShown() ? std::optional(window.GetRect()) : std::nullopt;
}

void RaiseNoteWindow(wxFrame& window) { SetWindowPos(window.GetHandle(), HWND_TOP, 0, 0, 0, 0, kOnlyHeight); }

void HaveNoFrame(wxFrame&) {}

void AcceptKeys(wxFrame&) {}

void ActivateNoteWindow(wxFrame& window) { SetForegroundWindow(window.GetHandle()); }

void ShowNoteWindow(wxFrame& window, bool topmost) {
    if (!window.IsShown()) window.ShowWithoutActivating();
    // A note may come while its user writes the next one.
    SetWindowPos(window.GetHandle(), topmost ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 kOnlyHeight | SWP_SHOWWINDOW);
}

void WhenOnScreen(wxFrame&, std::function<void()> then) { then(); }  // showing is all that it takes
