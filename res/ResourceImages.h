#pragma once
// The pixels of all pictures, as the build has drawn them from this folder.

#include <cstddef>

struct ResourceImage {
    int id;
    int width, height;
    const unsigned char* rgb;    // three bytes a pixel, rows from the top
    const unsigned char* alpha;  // one byte a pixel; null when all of it is opaque
};

// Images of one id stand together, the smallest first.
extern const ResourceImage kResourceImages[];
extern const std::size_t kResourceImageCount;
