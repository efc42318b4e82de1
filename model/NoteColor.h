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

// How well one colour is read on the other, 1 (not at all) to 21, by the luminances that the eye sees.
double Contrast(std::int32_t one, std::int32_t other);

// Text is read without effort from this contrast on; signs of a few lines need less.
constexpr double kReadable = 4.5;
constexpr double kRecognizable = 3;

// What is written on the paper that DisplayColor gives: the text, and in a quieter tone of the paper itself
// the date and the two controls. Readable on every paper.
std::int32_t TextInk(std::int32_t code, int bitsPerPixel);
std::int32_t QuietInk(std::int32_t code, int bitsPerPixel);

// The colour with so many hundredths of its brightness.
std::int32_t Darkened(std::int32_t color, int percent);

// Resource numbers: the folded corner in the tone that DisplayColor gives, and the small note of the tray
// icon. 0 for a code that is none of the four.
int CornerBitmap(std::int32_t code, int bitsPerPixel);
int NoteIcon(std::int32_t code);
