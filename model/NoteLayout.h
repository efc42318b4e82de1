#pragma once
// Where the parts of a note lie, which of them is under the pointer, what a press there starts, and the
// outline with the folded corner. Plain numbers, no window.

#include <array>
#include <cstdint>

// A rectangle in twips, or a point; the origin is the note's top-left corner.
struct TwipsRect {
    double left = 0, top = 0, width = 0, height = 0;
    double Right() const { return left + width; }
    double Bottom() const { return top + height; }
    bool Contains(double x, double y) const { return x >= left && x < Right() && y >= top && y < Bottom(); }
};

// Sizes of the fixed parts, twips. picEcke covers the folded corner, which is 27 pixels wide and 30 high.
constexpr double kFrame = 240;  // between the note's edge and its text
constexpr double kCornerWidth = 450;
constexpr double kCornerHeight = 480;
constexpr double kTimeHeight = 300;
constexpr double kButtonSize = 225;  // cmdMinimize and chkForeground, both ways
constexpr double kBorderBand = 100;  // the part of the edge that resizes
constexpr double kSmallestPixels = 50;
constexpr double kTwipsPerUsualPixel = 15;  // on a screen of 96 dots an inch

enum class NotePart { Body, lblMessage, lblZeit, picEcke, cmdMinimize, chkForeground };

// What the window system calls the part of a window that a press hits.
enum HitTest : int {
    HT_NONE = 0,
    HT_CAPTION = 2,
    HT_LEFT = 10,
    HT_RIGHT = 11,
    HT_TOP = 12,
    HT_TOPLEFT = 13,
    HT_BOTTOM = 15,
    HT_BOTTOMLEFT = 16,
    HT_BOTTOMRIGHT = 17,
};

// Pointer shapes by their number.
enum class Pointer {
    Default = 0,
    NorthEastSouthWest = 6,
    NorthSouth = 7,
    NorthWestSouthEast = 8,
    WestEast = 9,
    Hand = 99  // over an address that a click would open
};

struct NoteLayout {
    double width = 0, height = 0;
    TwipsRect lblMessage, lblZeit, picEcke, cmdMinimize, chkForeground;

    // The part under a point; what lies on top wins.
    NotePart PartAt(double x, double y) const;
};

// The layout of a note of this size in twips.
NoteLayout LayoutNote(double width, double height);

// What a left press on a part starts (HT_NONE: nothing), and the pointer over it.
HitTest PressHitTest(const NoteLayout& layout, double x, double y);
Pointer PointerAt(const NoteLayout& layout, double x, double y);

struct PixelPoint {
    int x = 0, y = 0;
    bool operator==(const PixelPoint&) const = default;
};

// The six corners of the note's outline, in whole pixels, for a window of this size in pixels. The cut grows
// with the scale, which is 1 on a screen of 96 dots an inch.
std::array<PixelPoint, 6> NoteOutline(int widthPixels, int heightPixels, double scale);
