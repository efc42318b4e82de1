#include "model/NoteColor.h"

#include <algorithm>
#include <cmath>

namespace {

struct Tone {
    std::int32_t code, pale;
};

// In the order of the resource numbers.
constexpr Tone kTones[] = {
    {kRed, 0x8080FF},
    {kLightBlue, 0xFFBD25},
    {kYellow, 0x94FEFE},
    {kGreen, 0x7DFF7D},
};

int IndexOf(std::int32_t code) {
    for (int i = 0; i < 4; ++i) {
        if (kTones[i].code == code) return i;
    }
    return -1;
}

constexpr std::int32_t kBlack = 0, kWhite = 0xFFFFFF;
// Enough to stay recognizable on the darker face of a control that is held down.
constexpr double kQuietContrast = 5;

int Part(std::int32_t color, int index) { return color >> (8 * index) & 0xFF; }

// The share of a colour's part in the light of a screen, 0 to 1.
double Linear(int part) {
    const double value = part / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double Luminance(std::int32_t color) {
    return 0.2126 * Linear(Part(color, 0)) + 0.7152 * Linear(Part(color, 1)) +
           0.0722 * Linear(Part(color, 2));
}

}  // namespace

double Contrast(std::int32_t one, std::int32_t other) {
    const double a = Luminance(one) + 0.05, b = Luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

std::int32_t Darkened(std::int32_t color, int percent) {
    std::int32_t darkened = 0;
    for (int i = 0; i < 3; ++i) darkened |= Part(color, i) * percent / 100 << (8 * i);
    return darkened;
}

// Black on the four papers; what a foreign code is painted as may be dark.
std::int32_t TextInk(std::int32_t code, int bitsPerPixel) {
    const std::int32_t paper = DisplayColor(code, bitsPerPixel);
    return Contrast(paper, kBlack) >= Contrast(paper, kWhite) ? kBlack : kWhite;
}

std::int32_t QuietInk(std::int32_t code, int bitsPerPixel) {
    if (IndexOf(code) < 0) return TextInk(code, bitsPerPixel);
    const std::int32_t paper = DisplayColor(code, bitsPerPixel);
    int percent = 45;
    while (percent > 0 && Contrast(paper, Darkened(paper, percent)) < kQuietContrast) --percent;
    return Darkened(paper, percent);
}

std::int32_t DisplayColor(std::int32_t code, int bitsPerPixel) {
    if (bitsPerPixel <= 8) return code;
    const int index = IndexOf(code);
    return index < 0 ? 0 : kTones[index].pale;
}

int CornerBitmap(std::int32_t code, int bitsPerPixel) {
    const int index = IndexOf(code);
    if (index < 0) return 0;
    return (DisplayColor(code, bitsPerPixel) == code ? 100 : 110) + index;
}

int NoteIcon(std::int32_t code) {
    const int index = IndexOf(code);
    return index < 0 ? 0 : 120 + index;
}
