#include "notes/NoteColor.h"

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

}  // namespace

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
