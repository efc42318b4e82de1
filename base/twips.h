#pragma once
// Lengths of notes are twips, 1/1440 inch, of a logical screen of 96 pixels an inch. A note keeps its place
// and size when the scale factor of the screen changes, because only the step to pixels knows that factor.

#include <cstdint>

constexpr double kTwipsPerLogicalPixel = 15.0;

// Nearest whole number, halves to the even neighbour; what does not fit 32 bits becomes the nearest that
// does.
std::int32_t RoundToEven(double value);
