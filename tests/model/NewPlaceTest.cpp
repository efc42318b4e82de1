#include <gtest/gtest.h>

#include "model/NewPlace.h"

TEST(NewPlace, TakesTheFirstFreePlaceOfTheCascade) {
    const PixelRect screen{0, 0, 1000, 800}, right{1000, 30, 600, 400};
    const PixelRect column{60, 60, 128, 740};
    const struct {
        const char* name;
        PixelRect area;
        std::vector<PixelRect> others;
        int width, height;
        PixelPoint place;
    } rows[] = {
        {"empty", screen, {}, 120, 80, {60, 60}},
        {"on another screen", right, {}, 120, 80, {1060, 90}},
        {"below the first", screen, {{60, 60, 120, 80}}, 120, 80, {60, 164}},
        {"one that is elsewhere", screen, {{500, 500, 120, 80}}, 120, 80, {60, 60}},
        {"one that reaches in from the edge", screen, {{-50, -50, 120, 120}}, 120, 80, {60, 86}},
        {"a gap that is large enough", screen, {{60, 60, 90, 52}, {60, 250, 90, 80}}, 90, 80, {60, 138}},
        {"a gap that is too small", screen, {{60, 60, 90, 52}, {60, 216, 90, 80}}, 90, 80, {60, 320}},
        {"the next column", screen, {column}, 120, 80, {216, 60}},
        {"all covered but by less at the right",
         screen,
         {{0, 0, 1000, 800}, {0, 0, 600, 800}},
         120,
         80,
         {606, 60}},
        {"too large", screen, {}, 1200, 900, {0, 0}},
        {"fits only into the corner", screen, {}, 980, 780, {20, 20}},
        {"no room at all", {0, 0, 20, 20}, {{0, 0, 5, 5}}, 120, 80, {0, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const PixelPoint place = NewPlace(row.area, row.others, row.width, row.height);
        EXPECT_EQ(place, row.place) << place.x << "," << place.y;
    }
}

TEST(NewPlace, BesideAnIconTheIconStaysFree) {
    const PixelRect area{0, 30, 1000, 740};
    const struct {
        const char* name;
        PixelRect icon, window;
    } rows[] = {
        {"in a panel below", {980, 775, 20, 20}, {794, 724, 200, 40}},
        {"in a panel above", {500, 5, 20, 20}, {410, 36, 200, 40}},
        {"in a strip of the area", {960, 740, 30, 30}, {794, 694, 200, 40}},
        {"in a strip at its upper edge", {960, 50, 30, 30}, {794, 86, 200, 40}},
        {"in the corner, of no size", {1000, 770, 0, 0}, {794, 724, 200, 40}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const PixelRect window = BesideIcon(area, row.icon, 200, 40);
        EXPECT_EQ(window, row.window) << window.x << "," << window.y;
    }
}
