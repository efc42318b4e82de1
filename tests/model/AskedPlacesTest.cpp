#include <gtest/gtest.h>

#include "model/AskedPlaces.h"

namespace {

constexpr PixelRect kA{200, 200, 100, 80}, kB{210, 200, 100, 80}, kC{210, 190, 110, 80},
    kElsewhere{560, 200, 90, 80};

}  // namespace

TEST(AskedPlaces, TheLastRequestCountsUntilTheWindowIsSeenWhereNoneAskedForIt) {
    const struct {
        const char* name;
        std::vector<PixelRect> asked;
        std::vector<std::optional<PixelRect>> shown;  // one after the other
        PixelRect now;
    } rows[] = {
        {"never seen", {kA}, {std::nullopt}, kA},
        {"not placed yet", {kA}, {PixelRect{0, 0, 0, 0}}, kA},
        {"done", {kA, kB}, {kB}, kB},
        {"one request behind", {kA, kB}, {kA}, kB},
        {"several behind", {kA, kB, kC}, {kA, kB}, kC},
        {"to and fro", {kA, kB, kA, kB, kA}, {kA, kB, kA, kB}, kA},
        {"moved, but not sized yet", {kA, kC}, {PixelRect{210, 190, 100, 80}}, kC},
        {"put elsewhere", {kA, kB}, {kElsewhere}, kElsewhere},
        {"only its place", {kA}, {PixelRect{560, 200, 100, 80}}, {560, 200, 100, 80}},
        {"only its size", {kA}, {PixelRect{200, 200, 90, 80}}, {200, 200, 90, 80}},
        {"back where it was before it came here", {kA, kB}, {kB, kA}, kA},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        AskedPlaces places;
        for (const PixelRect& rect : row.asked) places.Ask(rect);
        PixelRect now;
        for (const auto& shown : row.shown) now = places.Now(shown);
        EXPECT_EQ(now, row.now);
    }
}

TEST(AskedPlaces, WhatIsAskedForAfterwardsCountsAgain) {
    AskedPlaces places;
    places.Ask(kA);
    EXPECT_EQ(places.Now(kElsewhere), kElsewhere);
    places.Ask(kB);
    EXPECT_EQ(places.Now(kElsewhere), kB);
    EXPECT_EQ(places.Now(kB), kB);
}
