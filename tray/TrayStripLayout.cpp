#include "tray/TrayStripLayout.h"

#include <algorithm>

namespace {

constexpr int kSmallCell = 22;  // holds an icon of 16 pixels
constexpr int kSmallestCell = 10;

int Fitting(int room, int cell) { return std::max(1, (room - 2 * kStripBorder) / cell); }

}  // namespace

int StripLayout::Width() const { return columns * cell + 2 * kStripBorder; }

int StripLayout::Height() const { return rows * cell + 2 * kStripBorder; }

int StripLayout::CellX(int index) const { return Width() - kStripBorder - (index % columns + 1) * cell; }

int StripLayout::CellY(int index) const { return Height() - kStripBorder - (index / columns + 1) * cell; }

int StripLayout::IndexAt(int x, int y, int count) const {
    const int fromRight = Width() - kStripBorder - 1 - x;
    const int fromBottom = Height() - kStripBorder - 1 - y;
    if (fromRight < 0 || fromBottom < 0 || fromRight >= columns * cell) return -1;
    const int index = fromBottom / cell * columns + fromRight / cell;
    return index < std::min(count, rows * columns) ? index : -1;
}

StripLayout LayoutStrip(int count, int roomWidth, int roomHeight) {
    int cell = kStripCell;
    int columns = Fitting(roomWidth / 2, cell);
    int rows = Fitting(roomHeight / 2, cell);
    if (columns * rows < count) {
        cell = kSmallCell;
        columns = Fitting(roomWidth / 2, cell);
        rows = Fitting(roomHeight / 2, cell);
    }
    for (; columns * rows < count && cell >= kSmallestCell; --cell) {
        columns = Fitting(roomWidth, cell);
        rows = Fitting(roomHeight, cell);
        if (columns * rows >= count) break;
    }
    columns = std::min(columns, count);
    return {cell, columns, std::min(rows, (count + columns - 1) / columns)};
}
