#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "res/Packing.h"

namespace {

// Pictures by their parts red, green, blue and alpha.
struct Kind {
    const char* name;
    int start[4], alongX[4], alongY[4];
    int spread[4];      // of what is added by chance; 1 adds nothing
    bool grey = false;  // to all colours the same
};

std::vector<Pixel> Paint(const Kind& kind, int width, int height) {
    std::mt19937 random(7);
    std::vector<Pixel> pixels;
    for (int at = 0; at < width * height; ++at) {
        std::uint8_t parts[4];
        const auto same = static_cast<int>(random());
        for (int i = 0; i < 4; ++i) {
            const auto chance = kind.grey ? static_cast<unsigned>(same) : static_cast<unsigned>(random());
            const int value = kind.start[i] + kind.alongX[i] * (at % width) + kind.alongY[i] * (at / width);
            parts[i] = static_cast<std::uint8_t>(value + static_cast<int>(chance % unsigned(kind.spread[i])));
        }
        pixels.push_back({parts[0], parts[1], parts[2], parts[3]});
    }
    return pixels;
}

}  // namespace

TEST(Packing, EveryPictureComesBackAsItWas) {
    const Kind table[] = {
        {"one colour", {10, 20, 30, 255}, {}, {}, {1, 1, 1, 1}},
        {"slope", {0, 200, 0, 255}, {3, -1, 0, 0}, {2, 0, 5, 0}, {1, 1, 1, 1}},
        {"shadow", {0, 0, 0, 0}, {0, 0, 0, 3}, {0, 0, 0, 2}, {1, 1, 1, 9}},
        {"small steps", {127, 127, 127, 255}, {}, {}, {3, 3, 3, 1}},
        {"grey steps", {116, 116, 116, 255}, {}, {}, {24, 24, 24, 1}, true},
        {"around zero", {254, 255, 0, 255}, {}, {}, {3, 1, 1, 1}},
        {"opaque noise", {0, 0, 0, 255}, {}, {}, {256, 256, 256, 1}},
        {"noise", {0, 0, 0, 0}, {}, {}, {256, 256, 256, 256}},
    };
    for (const Kind& kind : table) {
        std::size_t packedBytes = 0;
        for (const auto& [width, height] :
             {std::pair(40, 30), {1, 1}, {1, 200}, {200, 1}, {7, 3}, {64, 2}, {65, 1}}) {
            SCOPED_TRACE(std::string(kind.name) + " " + std::to_string(width));
            const std::vector<Pixel> pixels = Paint(kind, width, height);
            const std::vector<std::uint8_t> packed = PackPixels(pixels, width);
            EXPECT_TRUE(UnpackPixels(packed, width, height) == pixels);
            packedBytes = std::max(packedBytes, packed.size());
        }
        EXPECT_LE(packedBytes, 5u * 40 * 30) << "no picture takes more than a byte a pixel for its packing";
    }
}
