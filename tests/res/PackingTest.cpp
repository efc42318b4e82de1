#include <gtest/gtest.h>

#include <functional>
#include <random>

#include "res/Packing.h"

namespace {

std::uint8_t Byte(int value) { return static_cast<std::uint8_t>(value); }

std::vector<Pixel> Paint(int width, int height, const std::function<Pixel(int x, int y)>& pixel) {
    std::vector<Pixel> pixels;
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) pixels.push_back(pixel(x, y));
    return pixels;
}

}  // namespace

TEST(Packing, EveryPictureComesBackAsItWas) {
    std::mt19937 random(7);
    const auto near = [&random](int spread) {
        return Byte(128 + static_cast<int>(random() % spread) - spread / 2);
    };
    const struct {
        const char* name;
        std::function<Pixel(int x, int y)> pixel;
        std::size_t mostBytes;  // of a picture of 40 x 30 pixels
    } table[] = {
        {"one colour",
         [](int, int) {
             return Pixel{10, 20, 30, 255};
         },
         30},
        {"nothing",
         [](int, int) {
             return Pixel{0, 0, 0, 0};
         },
         30},
        {"rows",
         [](int, int y) {
             return Pixel{Byte(200 - 9 * y), Byte(5 * y), 7, 255};
         },
         200},
        {"slope",
         [](int x, int y) {
             return Pixel{Byte(3 * x + 2 * y), Byte(200 - x), Byte(5 * y), 255};
         },
         2600},
        {"shadow",
         [](int x, int y) {
             return Pixel{0, 0, 0, Byte(x * y / 5)};
         },
         1200},
        {"small steps",
         [&](int, int) {
             return Pixel{near(3), near(3), near(3), 255};
         },
         2600},
        {"grey steps",
         [&](int, int) {
             const auto v = near(24);
             return Pixel{v, v, v, 255};
         },
         2600},
        {"around zero",
         [&](int x, int) {
             return Pixel{Byte(x % 2 ? 254 : 1), 255, 0, 255};
         },
         1500},
        {"opaque noise",
         [&](int, int) {
             return Pixel{Byte(random()), Byte(random()), Byte(random()), 255};
         },
         4800},
        {"noise",
         [&](int, int) {
             return Pixel{Byte(random()), Byte(random()), Byte(random()), Byte(random())};
         },
         6000},
    };
    for (const auto& row : table) {
        for (const auto& [width, height] :
             {std::pair(40, 30), {1, 1}, {1, 200}, {200, 1}, {7, 3}, {64, 2}, {65, 1}}) {
            SCOPED_TRACE(std::string(row.name) + " " + std::to_string(width));
            const std::vector<Pixel> pixels = Paint(width, height, row.pixel);
            const std::vector<std::uint8_t> packed = PackPixels(pixels, width);
            EXPECT_TRUE(UnpackPixels(packed, width, height) == pixels);
            if (width == 40) {
                EXPECT_LE(packed.size(), row.mostBytes);
            }
        }
    }
}

TEST(Packing, WhatIsNoPictureOfThatSizeGivesNone) {
    std::mt19937 random(8);
    const std::vector<Pixel> pixels = Paint(9, 6, [&](int x, int) {
        return x < 5 ? Pixel{1, 2, 3, 4} : Pixel{Byte(random()), 0, 0, Byte(random())};
    });
    const std::vector<std::uint8_t> packed = PackPixels(pixels, 9);
    for (std::size_t length = 0; length < packed.size(); ++length)
        EXPECT_TRUE(UnpackPixels(std::span(packed).first(length), 9, 6).empty()) << length;
    std::vector<std::uint8_t> longer = packed;
    longer.push_back(0x80);
    EXPECT_TRUE(UnpackPixels(longer, 9, 6).empty());

    const struct {
        std::vector<std::uint8_t> packed;
        int width, height;
    } table[] = {
        {{}, 1, 1},      {{}, 0, 0},
        {{0x80}, 0, 1},  {{0x80}, -1, -1},
        {{0xbf}, 63, 1},  // a run beyond the end
        {{0xe4}, 1, 1},   // kinds that do not exist
        {{0xff}, 1, 1},  {{0xe3, 1, 2, 3}, 1, 1},
        {{0x40}, 1, 1},  {{0xbf}, 2000000000, 2000000000},
    };
    for (const auto& row : table)
        EXPECT_TRUE(UnpackPixels(row.packed, row.width, row.height).empty())
            << row.width << "x" << row.height;
}
