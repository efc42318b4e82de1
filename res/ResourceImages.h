#pragma once
// The packed pixels of all pictures, as the build has drawn them from this folder.

#include <cstddef>
#include <cstdint>
#include <span>

struct ResourceImage {
    int id;
    int width, height;
    bool opaque;
    std::span<const std::uint8_t> packed;
};

// Images of one id stand together, the smallest first.
extern const std::span<const ResourceImage> kResourceImages;
