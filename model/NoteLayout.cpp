#include "model/NoteLayout.h"

#include <cmath>

NotePart NoteLayout::PartAt(double x, double y) const {
    if (cmdMinimize.Contains(x, y)) return NotePart::cmdMinimize;
    if (chkForeground.Contains(x, y)) return NotePart::chkForeground;
    if (picEcke.Contains(x, y)) return NotePart::picEcke;
    if (lblZeit.Contains(x, y)) return NotePart::lblZeit;
    if (lblMessage.Contains(x, y)) return NotePart::lblMessage;
    return NotePart::Body;
}

NoteLayout LayoutNote(double width, double height) {
    NoteLayout note;
    note.width = width;
    note.height = height;
    note.lblMessage = {kFrame, kFrame, width - 2 * kFrame, height - kCornerHeight - kFrame};
    note.picEcke = {width - kCornerWidth, height - kCornerHeight, kCornerWidth, kCornerHeight};
    note.lblZeit = {kFrame, height - kTimeHeight, width - kFrame - kCornerWidth, kTimeHeight};
    note.chkForeground = {width - 2 * kButtonSize, 0, kButtonSize, kButtonSize};
    note.cmdMinimize = {width - kButtonSize, 0, kButtonSize, kButtonSize};
    return note;
}

namespace {

HitTest BodyHitTest(double width, double height, double x, double y) {
    if (x > width - kBorderBand) return HT_RIGHT;
    const bool top = y < kBorderBand;
    const bool bottom = y > height - kBorderBand;
    if (x >= kBorderBand) return top ? HT_TOP : bottom ? HT_BOTTOM : HT_CAPTION;
    return top ? HT_TOPLEFT : bottom ? HT_BOTTOMLEFT : HT_LEFT;
}

bool InTimeBand(const NoteLayout& layout, double y) {
    return y - layout.lblZeit.top > layout.lblZeit.height - kBorderBand;
}

}  // namespace

HitTest PressHitTest(const NoteLayout& layout, double x, double y) {
    switch (layout.PartAt(x, y)) {
        case NotePart::Body:
            return BodyHitTest(layout.width, layout.height, x, y);
        case NotePart::lblMessage:
            return HT_CAPTION;
        case NotePart::lblZeit:
            return InTimeBand(layout, y) ? HT_BOTTOM : HT_NONE;
        case NotePart::picEcke:
            return HT_BOTTOMRIGHT;
        default:
            return HT_NONE;
    }
}

Pointer PointerAt(const NoteLayout& layout, double x, double y) {
    switch (layout.PartAt(x, y)) {
        case NotePart::Body:
        case NotePart::lblZeit:
        case NotePart::picEcke:
            break;
        default:
            return Pointer::Default;
    }
    switch (PressHitTest(layout, x, y)) {
        case HT_LEFT:
        case HT_RIGHT:
            return Pointer::WestEast;
        case HT_TOP:
        case HT_BOTTOM:
            return Pointer::NorthSouth;
        case HT_TOPLEFT:
        case HT_BOTTOMRIGHT:
            return Pointer::NorthWestSouthEast;
        case HT_BOTTOMLEFT:
            return Pointer::NorthEastSouthWest;
        default:
            return Pointer::Default;
    }
}

std::array<PixelPoint, 6> NoteOutline(int widthPixels, int heightPixels, double scale) {
    const int w = widthPixels, h = heightPixels;
    const auto cut = [scale](int pixels) { return static_cast<int>(std::lround(pixels * scale)); };
    return {{{w, h - cut(30)}, {w - cut(16), h - cut(2)}, {w - cut(19), h}, {0, h}, {0, 0}, {w, 0}}};
}
