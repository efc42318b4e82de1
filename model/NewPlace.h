#pragma once
// Where a new window is put among those that there are. Plain numbers, no window; pixels of the whole
// desktop.

#include <vector>

#include "model/NoteLayout.h"
#include "model/ScreenPlace.h"

// The upper left corner of a window of that size, both inside the area: the first place of a cascade where it
// covers none of the others, or else the first of those where it covers the least of them. The cascade runs
// in steps of kCascadeStep, from kCascadeBegin off the area's upper left corner downwards and then column by
// column to the right. A window too large for the area begins in that corner.
constexpr int kCascadeBegin = 60;
constexpr int kCascadeStep = 26;
PixelPoint NewPlace(const PixelRect& area, const std::vector<PixelRect>& others, int width, int height);

// A window of that size beside an icon, which it does not cover: above it, or below it in the upper half of
// the area, and inside the area.
PixelRect BesideIcon(const PixelRect& area, const PixelRect& icon, int width, int height);
