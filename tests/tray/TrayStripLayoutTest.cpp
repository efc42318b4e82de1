#include <gtest/gtest.h>

#include <algorithm>

#include "tray/TrayStripLayout.h"

TEST(TrayStripLayout, GivesEveryIconAPlaceOfItsOwn) {
    const struct {
        int count, roomWidth, roomHeight;
        int cell;  // 0: whatever fits
    } table[] = {
        {1, 1280, 900, kStripCell},   {2, 1280, 900, kStripCell},
        {22, 1280, 900, kStripCell},  {23, 1280, 900, kStripCell},
        {100, 1280, 900, kStripCell}, {1000, 1280, 900, 0},
        {1000, 800, 600, 0},          {60, 320, 200, 0},
        {1000000, 640, 480, 0},  // more than fits anywhere
    };
    for (const auto& row : table) {
        SCOPED_TRACE(testing::Message() << row.count << " in " << row.roomWidth << 'x' << row.roomHeight);
        const StripLayout layout = LayoutStrip(row.count, row.roomWidth, row.roomHeight);
        if (row.cell) {
            EXPECT_EQ(layout.cell, row.cell);
        }
        ASSERT_GT(layout.cell, 0);
        EXPECT_LE(layout.Width(), row.roomWidth);
        EXPECT_LE(layout.Height(), row.roomHeight);
        // The first one stands in the corner.
        EXPECT_EQ(layout.CellX(0) + layout.cell + kStripBorder, layout.Width());
        EXPECT_EQ(layout.CellY(0) + layout.cell + kStripBorder, layout.Height());
        for (int index = 0; index < std::min(row.count, layout.columns * layout.rows); ++index) {
            const int x = layout.CellX(index), y = layout.CellY(index), last = layout.cell - 1;
            ASSERT_GE(x, kStripBorder);
            ASSERT_GE(y, kStripBorder);
            ASSERT_EQ(layout.IndexAt(x, y, row.count), index);
            ASSERT_EQ(layout.IndexAt(x + last, y + last, row.count), index);
        }
    }
}

TEST(TrayStripLayout, NoIconIsUnderThePointerBesideTheCells) {
    const StripLayout layout = LayoutStrip(25, 1280, 900);  // two rows, the upper one not full
    ASSERT_EQ(layout.rows, 2);
    const std::pair<int, int> table[] = {
        {0, 10}, {10, 0}, {10, 10}, {layout.Width() - 1, 10}, {10, layout.Height() - 1}, {-5, -5}};
    for (const auto& [x, y] : table) EXPECT_EQ(layout.IndexAt(x, y, 25), -1) << x << ',' << y;
}
