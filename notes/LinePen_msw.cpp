#include <wx/dcmemory.h>
#include <wx/window.h>

#include "notes/LinePen.h"

namespace {

class MemoryDC : public wxMemoryDC {
  public:
    MemoryDC() {
        wxBitmap pixel(1, 1);
        // Else fonts would be those of a screen of 96 dots an inch.
        pixel.SetScaleFactor(wxWindow::FromDIP(kUsualDots, nullptr) / double{kUsualDots});
        SelectObject(pixel);
    }

  private:
    static constexpr int kUsualDots = 96;
};

}  // namespace

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

std::unique_ptr<wxDC> MeasuringDC() { return std::make_unique<MemoryDC>(); }

bool AlignsTheOtherWay(std::wstring_view) { return false; }
