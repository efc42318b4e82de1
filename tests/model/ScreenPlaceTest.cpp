#include <gtest/gtest.h>

#include <limits>

#include "model/ScreenPlace.h"

namespace {

using Rects = std::vector<PixelRect>;

// Every screen has a panel of 30 pixels along its lower edge.
PixelRect Shown(const Rects& screens, const PixelRect& window) {
    return ShownRect(
        screens,
        [&](std::size_t index) {
            PixelRect area = screens.at(index);
            area.height -= 30;
            return area;
        },
        window);
}

}  // namespace

TEST(ScreenPlace, OnlyWhatCannotBeGrabbedIsMoved) {
    const PixelRect laptop{0, 0, 1000, 800}, right{1000, 0, 1600, 1200}, above{0, -900, 1000, 900};
    const struct {
        const char* name;
        Rects screens;
        PixelRect window, shown;
    } rows[] = {
        {"in the middle", {laptop}, {100, 100, 200, 150}, {100, 100, 200, 150}},
        {"just enough on the left", {laptop}, {-176, 100, 200, 150}, {-176, 100, 200, 150}},
        {"a pixel too far left", {laptop}, {-177, 100, 200, 150}, {0, 100, 200, 150}},
        {"just enough below, behind the panel", {laptop}, {100, 776, 200, 150}, {100, 776, 200, 150}},
        {"a pixel too low", {laptop}, {100, 777, 200, 150}, {100, 620, 200, 150}},
        {"a corner is not enough", {laptop}, {980, 780, 200, 150}, {800, 620, 200, 150}},
        {"small, all of it visible", {laptop}, {990, 100, 10, 10}, {990, 100, 10, 10}},
        {"small, cut", {laptop}, {991, 100, 10, 10}, {990, 100, 10, 10}},
        {"on the second screen", {laptop, right}, {1500, 900, 200, 150}, {1500, 900, 200, 150}},
        {"second screen gone", {laptop}, {1500, 900, 200, 150}, {800, 620, 200, 150}},
        {"across both screens", {laptop, right}, {900, 100, 200, 150}, {900, 100, 200, 150}},
        {"nearest is the right one", {laptop, right}, {3000, 500, 200, 150}, {2400, 500, 200, 150}},
        {"nearest is the upper one", {laptop, above}, {-400, -600, 200, 150}, {0, -600, 200, 150}},
        {"beside the step between both", {laptop, right}, {700, 850, 200, 150}, {700, 620, 200, 150}},
        {"larger than the screen", {laptop}, {-5000, -5000, 3000, 2000}, {0, 0, 3000, 2000}},
        {"larger and partly visible", {laptop}, {-500, -500, 3000, 2000}, {-500, -500, 3000, 2000}},
        {"farther than numbers go",
         {laptop},
         {std::numeric_limits<int>::min(), std::numeric_limits<int>::max() - 200, 200, 150},
         {0, 620, 200, 150}},
        {"no screen at all", {}, {-500, -500, 200, 150}, {-500, -500, 200, 150}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const PixelRect shown = Shown(row.screens, row.window);
        EXPECT_EQ(shown, row.shown) << shown.x << "," << shown.y;
        // What is shown can be shown: doing it again changes nothing.
        EXPECT_EQ(Shown(row.screens, shown), shown);
    }
}
