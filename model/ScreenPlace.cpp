#include "model/ScreenPlace.h"

#include <algorithm>
#include <cstdint>

namespace {

// Of two spans, the length that they share, or the gap between them as a negative number.
std::int64_t Shared(int start, int end, int otherStart, int otherEnd) {
    return std::int64_t{std::min(end, otherEnd)} - std::max(start, otherStart);
}

std::int64_t Squared(std::int64_t number) { return number * number; }

// The square of the way from a window to a screen that it does not touch.
std::int64_t Way(const PixelRect& a, const PixelRect& b) {
    const std::int64_t x = Shared(a.x, a.Right(), b.x, b.Right());
    const std::int64_t y = Shared(a.y, a.Bottom(), b.y, b.Bottom());
    return Squared(std::min<std::int64_t>(x, 0)) + Squared(std::min<std::int64_t>(y, 0));
}

int Into(int start, int length, int areaStart, int areaLength) {
    return std::max(std::min(start, areaStart + areaLength - length), areaStart);
}

}  // namespace

bool CanBeGrabbed(const std::vector<PixelRect>& screens, const PixelRect& window) {
    return std::any_of(screens.begin(), screens.end(), [&](const PixelRect& screen) {
        return Shared(window.x, window.Right(), screen.x, screen.Right()) >=
                   std::min(window.width, kGrabPixels) &&
               Shared(window.y, window.Bottom(), screen.y, screen.Bottom()) >=
                   std::min(window.height, kGrabPixels);
    });
}

std::optional<std::size_t> NearestScreen(const std::vector<PixelRect>& screens, const PixelRect& window) {
    const auto nearest = std::min_element(
        screens.begin(), screens.end(),
        [&](const PixelRect& a, const PixelRect& b) { return Way(window, a) < Way(window, b); });
    if (nearest == screens.end()) return std::nullopt;
    return static_cast<std::size_t>(nearest - screens.begin());
}

PixelRect MovedInto(const PixelRect& area, PixelRect window) {
    window.x = Into(window.x, window.width, area.x, area.width);
    window.y = Into(window.y, window.height, area.y, area.height);
    return window;
}

PixelRect ShownRect(const std::vector<PixelRect>& screens,
                    const std::function<PixelRect(std::size_t)>& freeArea, const PixelRect& window) {
    if (CanBeGrabbed(screens, window)) return window;
    const auto nearest = NearestScreen(screens, window);
    return nearest ? MovedInto(freeArea(*nearest), window) : window;
}
