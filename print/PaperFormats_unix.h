#pragma once
// The paper formats that the printer set-up offers.

#include <array>
#include <cmath>
#include <utility>

#include "print/PageLayout.h"

struct PaperFormat {
    const wchar_t* caption;
    const char* medium;  // its name for CUPS
    PaperSize size;      // upright, millimetres
};

inline constexpr std::array<PaperFormat, 5> kPaperFormats = {{
    {L"A4 (210 × 297 mm)", "iso_a4_210x297mm", {210, 297}},
    {L"A3 (297 × 420 mm)", "iso_a3_297x420mm", {297, 420}},
    {L"A5 (148 × 210 mm)", "iso_a5_148x210mm", {148, 210}},
    {L"A6 (105 × 148 mm)", "iso_a6_105x148mm", {105, 148}},
    {L"Letter (216 × 279 mm)", "na_letter_8.5x11in", {215.9, 279.4}},
}};

inline bool IsLandscape(const PaperSize& size) { return size.width > size.height; }

// The format of a paper in either orientation; null for a paper of no format.
inline const PaperFormat* FormatOf(PaperSize size) {
    constexpr double kTolerance = 1;  // mm
    if (IsLandscape(size)) std::swap(size.width, size.height);
    for (const PaperFormat& format : kPaperFormats) {
        if (std::abs(size.width - format.size.width) < kTolerance &&
            std::abs(size.height - format.size.height) < kTolerance)
            return &format;
    }
    return nullptr;
}
