#pragma once
// Breaking a note's text into the lines that are painted. Pure: how wide text is, the caller's function says.

#include <functional>
#include <string>
#include <string_view>
#include <vector>

struct FlowLine {
    std::wstring_view text;  // part of the text given, without its line break
    int width = 0;           // pixels
};

// The widths of the beginnings of a text: element i is that of its first i + 1 characters, in pixels.
using MeasureText = std::function<std::vector<int>(std::wstring_view)>;

// Lines of the text broken at its line breaks (CR LF, CR, LF) and, where `width` pixels are exceeded, at the
// last blank before; a word that is wider than a line is cut inside. Blanks at which a line is broken are not
// shown. Always at least one line. A width of 0 or less breaks only at line breaks. Stops after maxLines
// lines, so a text that nobody can see costs nothing.
std::vector<FlowLine> FlowText(std::wstring_view text, int width, const MeasureText& measure,
                               std::size_t maxLines = static_cast<std::size_t>(-1));
