#include <gtest/gtest.h>

#include "model/NoteLayout.h"

namespace {

constexpr double W = 3000, H = 2000;

}  // namespace

TEST(NoteLayout, PressesAndPointersFollowTheParts) {
    const NoteLayout note = LayoutNote(W, H);
    const double timeBand = note.lblZeit.Bottom() - kBorderBand;
    const struct {
        double x, y;
        NotePart part;
        HitTest hit;
        Pointer pointer;
    } rows[] = {
        {W - 100, 1000, NotePart::Body, HT_CAPTION, Pointer::Default},
        {W - 99, 1000, NotePart::Body, HT_RIGHT, Pointer::WestEast},
        {100, 1000, NotePart::Body, HT_CAPTION, Pointer::Default},
        {99, 1000, NotePart::Body, HT_LEFT, Pointer::WestEast},
        {1500, 100, NotePart::Body, HT_CAPTION, Pointer::Default},
        {1500, 99, NotePart::Body, HT_TOP, Pointer::NorthSouth},
        {100, 99, NotePart::Body, HT_TOP, Pointer::NorthSouth},
        {99, 99, NotePart::Body, HT_TOPLEFT, Pointer::NorthWestSouthEast},
        {99, 100, NotePart::Body, HT_LEFT, Pointer::WestEast},
        {99, H - 100, NotePart::Body, HT_LEFT, Pointer::WestEast},
        {99, H - 99, NotePart::Body, HT_BOTTOMLEFT, Pointer::NorthEastSouthWest},
        {100, H - 99, NotePart::Body, HT_BOTTOM, Pointer::NorthSouth},
        {100, H - 100, NotePart::Body, HT_CAPTION, Pointer::Default},
        {1000, 1000, NotePart::lblMessage, HT_CAPTION, Pointer::Default},
        {1000, timeBand, NotePart::lblZeit, HT_NONE, Pointer::Default},
        {1000, timeBand + 1, NotePart::lblZeit, HT_BOTTOM, Pointer::NorthSouth},
        {W - 50, H - 400, NotePart::picEcke, HT_BOTTOMRIGHT, Pointer::NorthWestSouthEast},
        {W - 50, 50, NotePart::cmdMinimize, HT_NONE, Pointer::Default},
        {W - 300, 50, NotePart::chkForeground, HT_NONE, Pointer::Default},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.x << ", " << row.y);
        EXPECT_EQ(note.PartAt(row.x, row.y), row.part);
        EXPECT_EQ(PressHitTest(note, row.x, row.y), row.hit);
        EXPECT_EQ(PointerAt(note, row.x, row.y), row.pointer);
    }
}

TEST(NoteLayout, OutlineCutsWhatTheCornerPictureCovers) {
    const std::array<PixelPoint, 6> expected = {
        {{200, 120}, {184, 148}, {181, 150}, {0, 150}, {0, 0}, {200, 0}}};
    EXPECT_EQ(NoteOutline(200, 150, 1), expected);
    EXPECT_EQ(NoteOutline(400, 300, 2)[1], (PixelPoint{368, 296}));
    const NoteLayout note = LayoutNote(200 * 15, 150 * 15);
    EXPECT_LE(note.picEcke.left / 15, 181 - 8);  // the flap reaches further in than the cut
    EXPECT_LE(note.picEcke.top / 15, 120);
}
