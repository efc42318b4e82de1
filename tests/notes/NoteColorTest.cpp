#include <gtest/gtest.h>

#include "notes/NoteColor.h"

TEST(NoteColor, DependsOnTheDepthOfTheDisplay) {
    struct Row {
        std::int32_t code, pale;
        int pureCorner, paleCorner, icon;
    };
    const Row rows[] = {
        {kRed, 0x8080FF, 100, 110, 120},
        {kLightBlue, 0xFFBD25, 101, 111, 121},
        {kYellow, 0x94FEFE, 102, 112, 122},
        {kGreen, 0x7DFF7D, 103, 113, 123},
        {0x123456, 0, 0, 0, 0},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.code);
        EXPECT_EQ(DisplayColor(row.code, 8), row.code);
        EXPECT_EQ(DisplayColor(row.code, 1), row.code);
        EXPECT_EQ(DisplayColor(row.code, 16), row.pale);
        EXPECT_EQ(DisplayColor(row.code, 32), row.pale);
        EXPECT_EQ(CornerBitmap(row.code, 8), row.pureCorner);
        EXPECT_EQ(CornerBitmap(row.code, 24), row.paleCorner);
        EXPECT_EQ(NoteIcon(row.code), row.icon);
    }
}
