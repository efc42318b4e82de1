#include "notes/NotePlace.h"

#include <wx/display.h>

#include <algorithm>
#include <cmath>

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

wxPoint NextPlace() {
    constexpr int kStep = 26, kSteps = 12, kFirst = 60;
    static int count = 0;
    const wxRect area = wxDisplay(0u).GetClientArea();
    const int offset = kFirst + kStep * (count++ % kSteps);
    return {area.x + offset, area.y + offset};
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
