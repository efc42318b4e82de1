#include "notes/NotePlace.h"

#include <wx/dialog.h>
#include <wx/display.h>

#include <algorithm>
#include <cmath>

#include "model/NewPlace.h"
#include "notes/NoteWindow.h"

namespace {

// X11 and Windows take no coordinates beyond 16 bits.
constexpr double kFarthest = 16'000;
// Wider or higher windows may be larger than the screen; smaller ones never are.
constexpr int kSafePixels = 600;

int ToPixels(double twips, double twipsPerPixel) {
    return static_cast<int>(std::lround(std::clamp(twips / twipsPerPixel, -kFarthest, kFarthest)));
}

std::vector<PixelRect> Screens() {
    std::vector<PixelRect> screens;
    const unsigned count = wxDisplay::GetCount();
    for (unsigned i = 0; i < count; ++i) screens.push_back(FromWx(wxDisplay(i).GetGeometry()));
    return screens;
}

PixelRect FreeArea(std::size_t screen) {
    return FromWx(wxDisplay(static_cast<unsigned>(screen)).GetClientArea());
}

}  // namespace

wxPoint NextPlace(const wxSize& size, const std::vector<wxRect>& others) {
    std::vector<PixelRect> rects;
    for (const wxRect& other : others) rects.push_back(FromWx(other));
    for (const wxWindow* const window : wxTopLevelWindows) {
        if (window->IsShown() && dynamic_cast<const wxDialog*>(window))
            rects.push_back(FromWx(window->GetScreenRect()));
    }
    const PixelPoint place = NewPlace(FromWx(wxDisplay(0u).GetClientArea()), rects, size.x, size.y);
    return {place.x, place.y};
}

wxRect NotePixels(const wxWindow& window, const NotePlace& place) {
    const double x = TwipsPerPixelX(window), y = TwipsPerPixelY(window);
    return {ToPixels(place.left, x), ToPixels(place.top, y), ToPixels(place.width, x),
            ToPixels(place.height, y)};
}

wxRect LargestRect() {
    wxRect all;
    for (const PixelRect& screen : Screens()) all.Union(ToWx(screen));
    all.width = std::max(all.width, kSafePixels);
    all.height = std::max(all.height, kSafePixels);
    return all;
}

wxRect OnScreens(wxRect rect) {
    if (rect.width > kSafePixels || rect.height > kSafePixels) {
        const wxRect largest = LargestRect();
        if (rect.width > largest.width) rect = {largest.x, rect.y, largest.width, rect.height};
        rect.height = std::min(rect.height, largest.height);
    }
    return ToWx(ShownRect(Screens(), FreeArea, FromWx(rect)));
}
