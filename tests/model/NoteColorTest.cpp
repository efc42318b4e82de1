#include <gtest/gtest.h>

#include "model/NoteColor.h"

TEST(NoteColor, DependsOnTheDepthOfTheDisplay) {
    const struct {
        std::int32_t code, pale;
        int icon;
    } rows[] = {
        {kRed, 0x8080FF, 120}, {kLightBlue, 0xFFBD25, 121}, {kYellow, 0x94FEFE, 122}, {kGreen, 0x7DFF7D, 123},
        {0x123456, 0, 0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.code);
        for (const int depth : {1, 8, 16, 32})
            EXPECT_EQ(DisplayColor(row.code, depth), depth <= 8 ? row.code : row.pale);
        EXPECT_EQ(NoteIcon(row.code), row.icon);
    }
    EXPECT_EQ(CornerBitmap(0x123456, 24), 0);
}

TEST(NoteColor, ContrastIsMeasuredAsTheEyeDoes) {
    const struct {
        std::int32_t one, other;
        double contrast;
    } rows[] = {{0x000000, 0xFFFFFF, 21},
                {0x777777, 0xFFFFFF, 4.48},
                {0x0000FF, 0xFFFFFF, 4.0},
                {0xFF0000, 0x000000, 2.44},
                {0x123456, 0x123456, 1}};
    for (const auto& row : rows) {
        EXPECT_NEAR(Contrast(row.one, row.other), row.contrast, 0.005);
        EXPECT_NEAR(Contrast(row.other, row.one), row.contrast, 0.005);
    }
}

// The paper is the same in light and in dark themes, and so is what is written on it.
TEST(NoteColor, EverythingWrittenOnPaperIsReadable) {
    for (const std::int32_t code : {kYellow, kGreen, kRed, kLightBlue, 0x123456}) {
        for (const int depth : {8, 24}) {
            SCOPED_TRACE(testing::Message() << std::hex << code << " at " << depth);
            const std::int32_t paper = DisplayColor(code, depth), quiet = QuietInk(code, depth);
            EXPECT_GE(Contrast(paper, TextInk(code, depth)), kReadable);
            EXPECT_GE(Contrast(paper, quiet), kReadable);
            if (code == 0x123456) continue;
            // The face of a control that is held down.
            EXPECT_GE(Contrast(Darkened(paper, 80), quiet), kRecognizable);
            EXPECT_NE(quiet, TextInk(code, depth));
        }
    }
}
