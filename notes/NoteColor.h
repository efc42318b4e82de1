#pragma once
// The four colours of notes. What is stored is a colour code (0x00BBGGRR); what is painted depends on how
// many colours the display has.

#include <array>
#include <cstdint>

constexpr std::int32_t kYellow = 0x00FFFF;
constexpr std::int32_t kGreen = 0x00FF00;
constexpr std::int32_t kRed = 0x0000FF;
constexpr std::int32_t kLightBlue = 0xFFFF00;

// In the order in which dialogs offer them.
constexpr std::array<std::int32_t, 4> kNoteColors = {kYellow, kGreen, kRed, kLightBlue};

// The colour painted for a code on a display of this many bits a pixel: the code itself with at most 256
// colours, else its pale tone; 0 for a code that is none of the four.
std::int32_t DisplayColor(std::int32_t code, int bitsPerPixel);

// Resource numbers: the folded corner in the tone that DisplayColor gives, and the small note of the tray
// icon. 0 for a code that is none of the four.
int CornerBitmap(std::int32_t code, int bitsPerPixel);
int NoteIcon(std::int32_t code);
