#include "res/Packing.h"

#include <algorithm>
#include <cstddef>

// Every pixel is guessed from its neighbours to the left, above and between the two; what is stored is how
// far the guess is off. The first byte of each piece:
//   00rrggbb  colour off by -2 to 1 in each part, alpha as guessed
//   01gggggg  green off by -32 to 31; in the next byte red and blue off by -8 to 7 more than green
//   10nnnnnn  1 to 64 pixels as guessed
//   110aaaaa  alpha off by -16 to 15, colour as guessed
//   111.....  one of the kinds below

namespace {

enum Kind : std::uint8_t {
    kNear = 0x00,
    kFar = 0x40,
    kAsGuessed = 0x80,
    kAlpha = 0xc0,
    kAsLeft = 0xe0,
    kAsAbove = 0xe1,
    kColour = 0xe2,    // red, green and blue follow, alpha is as guessed
    kComplete = 0xe3,  // red, green, blue and alpha follow
};
constexpr int kLongestRun = 64;

struct Neighbours {
    Pixel left, above, guess;
};

// Continues an even slope, and takes the nearer neighbour at an edge.
std::uint8_t Guess(std::uint8_t left, std::uint8_t above, std::uint8_t between) {
    const auto [low, high] = std::minmax(left, above);
    if (between >= high) return low;
    if (between <= low) return high;
    return static_cast<std::uint8_t>(left + above - between);
}

Neighbours Look(const Pixel* pixels, std::size_t at, std::size_t width) {
    const bool firstRow = at < width;
    if (at % width == 0) {
        const Pixel around = firstRow ? Pixel{} : pixels[at - width];
        return {around, around, around};
    }
    const Pixel left = pixels[at - 1];
    if (firstRow) return {left, left, left};
    const Pixel above = pixels[at - width], between = pixels[at - width - 1];
    if (left == between) return {left, above, above};
    if (above == between) return {left, above, left};
    return {left,
            above,
            {Guess(left.red, above.red, between.red), Guess(left.green, above.green, between.green),
             Guess(left.blue, above.blue, between.blue), Guess(left.alpha, above.alpha, between.alpha)}};
}

// How far one value is from the other on the circle of 256.
int Off(std::uint8_t value, std::uint8_t guess) { return static_cast<std::int8_t>(value - guess); }

bool Within(int value, int least, int most) { return value >= least && value <= most; }

void PackOne(std::vector<std::uint8_t>& out, const Pixel& pixel, const Neighbours& around) {
    const auto put = [&out](int byte) { out.push_back(static_cast<std::uint8_t>(byte)); };
    const int red = Off(pixel.red, around.guess.red), green = Off(pixel.green, around.guess.green),
              blue = Off(pixel.blue, around.guess.blue), alpha = Off(pixel.alpha, around.guess.alpha);
    if (pixel == around.left) {
        put(kAsLeft);
    } else if (pixel == around.above) {
        put(kAsAbove);
    } else if (red == 0 && green == 0 && blue == 0 && Within(alpha, -16, 15)) {
        put(kAlpha | (alpha + 16));
    } else if (alpha != 0) {
        for (const int byte :
             {int{kComplete}, int{pixel.red}, int{pixel.green}, int{pixel.blue}, int{pixel.alpha}})
            put(byte);
    } else if (Within(red, -2, 1) && Within(green, -2, 1) && Within(blue, -2, 1)) {
        put(kNear | (red + 2) << 4 | (green + 2) << 2 | (blue + 2));
    } else if (Within(green, -32, 31) && Within(red - green, -8, 7) && Within(blue - green, -8, 7)) {
        put(kFar | (green + 32));
        put((red - green + 8) << 4 | (blue - green + 8));
    } else {
        for (const int byte : {int{kColour}, int{pixel.red}, int{pixel.green}, int{pixel.blue}}) put(byte);
    }
}

std::uint8_t Add(std::uint8_t guess, int off) { return static_cast<std::uint8_t>(guess + off); }

// How many bytes follow the first one of a piece.
std::size_t Following(std::uint8_t first) {
    if (first >= kAsLeft) return first == kColour ? 3 : first == kComplete ? 4 : 0;
    return (first & 0xc0) == kFar ? 1 : 0;
}

// The pixel of a piece; `next` points to the bytes that follow the first one.
Pixel UnpackOne(std::uint8_t first, const std::uint8_t* next, const Neighbours& around) {
    Pixel pixel = around.guess;
    if (first == kAsLeft) return around.left;
    if (first == kAsAbove) return around.above;
    if (first == kColour) return {next[0], next[1], next[2], pixel.alpha};
    if (first == kComplete) return {next[0], next[1], next[2], next[3]};
    if (first >= kAlpha) {
        pixel.alpha = Add(pixel.alpha, (first & 0x1f) - 16);
    } else if (first >= kFar) {
        const int green = (first & 0x3f) - 32;
        pixel.red = Add(pixel.red, green + (next[0] >> 4) - 8);
        pixel.green = Add(pixel.green, green);
        pixel.blue = Add(pixel.blue, green + (next[0] & 0x0f) - 8);
    } else {
        pixel.red = Add(pixel.red, (first >> 4) - 2);
        pixel.green = Add(pixel.green, ((first >> 2) & 3) - 2);
        pixel.blue = Add(pixel.blue, (first & 3) - 2);
    }
    return pixel;
}

}  // namespace

std::vector<std::uint8_t> PackPixels(std::span<const Pixel> pixels, int width) {
    std::vector<std::uint8_t> packed;
    const auto rowLength = static_cast<std::size_t>(width);
    int run = 0;
    const auto endRun = [&] {
        if (run > 0) packed.push_back(static_cast<std::uint8_t>(kAsGuessed | (run - 1)));
        run = 0;
    };
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const Neighbours around = Look(pixels.data(), i, rowLength);
        if (pixels[i] == around.guess) {
            if (++run == kLongestRun) endRun();
        } else {
            endRun();
            PackOne(packed, pixels[i], around);
        }
    }
    endRun();
    return packed;
}

std::vector<Pixel> UnpackPixels(std::span<const std::uint8_t> packed, int width, int height) {
    if (width <= 0 || height <= 0) return {};
    const auto rowLength = static_cast<std::size_t>(width);
    const std::size_t count = rowLength * static_cast<std::size_t>(height);
    // No byte stands for more pixels than the longest run: this is asked before memory is taken.
    if (count / kLongestRun > packed.size()) return {};
    std::vector<Pixel> pixels(count);
    std::size_t done = 0, at = 0;
    while (at < packed.size()) {
        const std::uint8_t first = packed[at++];
        const bool isRun = (first & 0xc0) == kAsGuessed;
        const std::size_t run = isRun ? (first & 0x3fU) + 1 : 1, following = Following(first);
        if (first > kComplete || run > count - done || following > packed.size() - at) return {};
        for (const std::size_t end = done + run; done < end; ++done) {
            const Neighbours around = Look(pixels.data(), done, rowLength);
            pixels[done] = isRun ? around.guess : UnpackOne(first, packed.data() + at, around);
        }
        at += following;
    }
    if (done != count) return {};
    return pixels;
}
