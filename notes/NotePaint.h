#pragma once
// Painting a note, and measuring its text as it is painted.

#include <wx/dc.h>

#include <climits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/Note.h"
#include "model/NoteLayout.h"
#include "model/TextLinks.h"

// The colour of a 0x00BBGGRR value.
wxColour ToColour(std::int32_t bgr);

// What the pointer and the keyboard do to the picture of a note.
struct NoteHints {
    NotePart hovered = NotePart::Body;
    bool pressed = false;                          // the hovered button is held down
    std::optional<NotePart> focus = std::nullopt;  // Body: the text
    TextLink link = {};                            // underlined
};

// Paints the whole note into its window's client area; `scale` is pixels a twip. False when there is no room
// for all of its text.
bool PaintNote(wxDC& dc, const Note& note, const NoteHints& hints, const NoteLayout& layout, double scaleX,
               double scaleY);

// A line of a note's text where it is painted, in pixels of the window; it may lie below what fits.
struct PaintedLine {
    std::wstring_view text;  // part of the note's
    wxRect place;
    std::vector<int> ends;  // of each character, from the left of the place
};
// All of them. The note keeps the text.
std::vector<PaintedLine> PaintedLines(const Note& note, const NoteLayout& layout, double scaleX,
                                      double scaleY);

// Whether the note has room for its creation time, which is painted in a shorter form otherwise, or not at
// all.
bool ShowsWholeTime(const Note& note, const NoteLayout& layout, double scaleX, double scaleY);

// The size in pixels that the text needs, in lines no wider than that many pixels. 0: only its own line
// breaks count. What lies below `highest` pixels is not measured.
wxSize NaturalTextSize(const std::wstring& text, const wxFont& font, int width = 0, int highest = INT_MAX);
