#pragma once
// Where a window is shown that should stand where no screen is. Plain numbers, no window; pixels of the whole
// desktop.

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

struct PixelRect {
    int x = 0, y = 0, width = 0, height = 0;
    int Right() const { return x + width; }
    int Bottom() const { return y + height; }
    bool operator==(const PixelRect&) const = default;
};

// So much of a window, both ways, has to be on one screen for the user to find it and to take hold of it:
// more than the edge that resizes. Of a smaller window, all of it.
constexpr int kGrabPixels = 24;

bool CanBeGrabbed(const std::vector<PixelRect>& screens, const PixelRect& window);

// The index of the screen with the shortest way to the window, the first one of equals. Nothing without
// screens.
std::optional<std::size_t> NearestScreen(const std::vector<PixelRect>& screens, const PixelRect& window);

// The window moved into the area by the shortest way; of one that does not fit, the upper left stays visible.
PixelRect MovedInto(const PixelRect& area, PixelRect window);

// The window as it is to be shown: where it should stand, if it can be grabbed there, else on the nearest
// screen. freeArea: the part of the screen of that index that no panel covers; asked only for that screen.
PixelRect ShownRect(const std::vector<PixelRect>& screens,
                    const std::function<PixelRect(std::size_t screen)>& freeArea, const PixelRect& window);
