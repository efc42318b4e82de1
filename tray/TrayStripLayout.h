#pragma once
// Where the icons stand in the strip that replaces a missing notification area. Plain numbers, no window;
// lengths are pixels from the strip's top-left corner.

struct StripLayout {
    int cell = 0;  // edge of the square that an icon gets
    int columns = 0;
    int rows = 0;
    int Width() const;
    int Height() const;

    // The icon under a point of the strip, -1 for none. Icon 0 stands at the bottom right; the next ones
    // stand to its left, then in the rows above, so no icon moves when others come and go behind it.
    int IndexAt(int x, int y, int count) const;
    // Left and top edge of an icon's cell.
    int CellX(int index) const;
    int CellY(int index) const;
};

constexpr int kStripBorder = 3;   // between the strip's edge and its cells
constexpr int kStripCell = 28;    // a cell as long as there is room
constexpr int kStripPadding = 3;  // between a cell's edge and its icon

// The layout of `count` icons (at least one) on a screen with that much room. Up to a quarter of the room is
// filled with cells of full size; more icons get smaller cells and then the whole room. What does not fit
// even so has no place: IndexAt never gives it.
StripLayout LayoutStrip(int count, int roomWidth, int roomHeight);
