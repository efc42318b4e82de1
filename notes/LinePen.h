#pragma once
// A font at work in a device context: measures and draws single lines of text. Making a line ready is the
// dear part of both; lines that are measured and then drawn in the same order are made ready once.

#include <wx/dc.h>

#include <memory>
#include <string_view>
#include <vector>

class LinePen {
  public:
    // The context must outlive the pen. The font keeps its context's resolution.
    LinePen(wxDC& dc, const wxFont& font);
    ~LinePen();

    // Where each character of the line ends: element i is the width of the first i + 1 characters, in pixels.
    // The text must stay where it is until it has been drawn or the pen is gone.
    std::vector<int> Measure(std::wstring_view text);

    // With its top left corner at a place in pixels. The ink is opaque.
    void Draw(std::wstring_view text, int x, int y, const wxColour& ink);

  private:
    struct Lines;
    std::unique_ptr<Lines> lines_;
};

// For measuring text without a window, as it will be painted in one.
std::unique_ptr<wxDC> MeasuringDC();

// Whether a text box aligns a line that begins so the other way round: on Linux, if it reads from right to
// left.
bool AlignsTheOtherWay(std::wstring_view line);
