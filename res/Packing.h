#pragma once
// Pictures packed without loss. The program carries its pictures in this form on every platform, so it needs
// no decoder of a library for them; drawings with flat colours and soft shadows shrink to about a tenth.

#include <compare>
#include <cstdint>
#include <span>
#include <vector>

struct Pixel {
    std::uint8_t red = 0, green = 0, blue = 0, alpha = 255;
    auto operator<=>(const Pixel&) const = default;
};

// Packs the rows of a picture from the top; there are as many pixels as fill whole rows of `width`.
std::vector<std::uint8_t> PackPixels(std::span<const Pixel> pixels, int width);

// Gives the pixels of a picture of that size back. Empty when the bytes are not exactly one packed picture of
// that size.
std::vector<Pixel> UnpackPixels(std::span<const std::uint8_t> packed, int width, int height);
