#pragma once
// What stands on printed pages, and how its measures are asked for. All lengths are points, 1/72 inch; the
// origin is the paper's top-left corner.

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "model/Note.h"

// How a stretch of text is set.
struct PrintFont {
    double size = kDefaultFontSize;  // in the place of the look's own
    NoteLook look = {};

    bool operator==(const PrintFont&) const = default;
};

struct MeasuredText {
    // Element i is the width of the first i + 1 characters. A character that belongs to the one before it,
    // like an accent on a letter, adds nothing.
    std::vector<double> ends;
    // What the text covers above and below its baseline; never less than its font does.
    double ascent = 0, descent = 0;
    // How far ink sticks out before the text's beginning and behind its end.
    double left = 0, right = 0;
};

// Measures text without line breaks and tabs.
using MeasurePrinted = std::function<MeasuredText(std::wstring_view text, const PrintFont& font)>;

struct PrintedText {
    std::wstring text;
    PrintFont font;
    double x = 0, baseline = 0;
};

struct PrintedLine {
    enum Kind { Date, Text, PageNumber };
    Kind kind = Text;
    std::size_t note = 0;  // index
    // The part of the note's text or date that the line holds, without a line break at its end. The parts
    // below leave out its tabs, and blanks at its end.
    std::size_t begin = 0, end = 0;
    double left = 0, top = 0, width = 0, height = 0;
    std::vector<PrintedText> parts;
};

struct PrintedPage {
    std::vector<PrintedLine> lines;
    struct Rule {
        double left = 0, right = 0, y = 0;
    };
    std::vector<Rule> rules;
};
