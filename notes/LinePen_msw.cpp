#include "notes/LinePen.h"

struct LinePen::Lines {
    wxDC& dc;
};

LinePen::LinePen(wxDC& dc, const wxFont& font) : lines_(new Lines{dc}) { dc.SetFont(font); }
LinePen::~LinePen() = default;

std::vector<int> LinePen::Measure(std::wstring_view text) {
    wxArrayInt widths;
    lines_->dc.GetPartialTextExtents(wxString(text.data(), text.size()), widths);
    std::vector<int> ends(widths.begin(), widths.end());
    ends.resize(text.size(), ends.empty() ? 0 : ends.back());
    return ends;
}

void LinePen::Draw(std::wstring_view text, int x, int y, const wxColour& ink) {
    lines_->dc.SetTextForeground(ink);
    lines_->dc.DrawText(wxString(text.data(), text.size()), x, y);
}

bool AlignsTheOtherWay(std::wstring_view) { return false; }
