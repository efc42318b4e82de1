#include "notes/NotePaint.h"

#include <algorithm>
#include <cmath>

#include "base/DateText.h"
#include "model/TextFlow.h"
#include "notes/LinePen.h"
#include "notes/NoteFont.h"
#include "notes/NoteWindow.h"
#include "res/Resources.h"

namespace {

// More lines than any screen shows at the smallest size.
constexpr std::size_t kMostLines = 5000;

wxRect ToPixels(const TwipsRect& rect, double scaleX, double scaleY) {
    const int left = static_cast<int>(std::lround(rect.left * scaleX));
    const int top = static_cast<int>(std::lround(rect.top * scaleY));
    return wxRect(left, top, static_cast<int>(std::lround(rect.Right() * scaleX)) - left,
                  static_cast<int>(std::lround(rect.Bottom() * scaleY)) - top);
}

const wxFont& SmallFont() {
    static const wxFont font(wxFontInfo(7.5).FaceName(L"Arial"));
    return font;
}

// Height of a line in a font. All notes share few fonts, and asking for a height is as dear as drawing. So is
// comparing two fonts by what they look like.
int LineHeight(wxDC& dc, const wxFont& font) {
    static std::vector<std::pair<wxFont, int>> known;
    for (const auto& [each, height] : known) {
        if (each.IsSameAs(font)) return height;
    }
    dc.SetFont(font);
    known.emplace_back(font, std::max(dc.GetCharHeight(), 1));
    return known.back().second;
}

MeasureText MeasureWith(LinePen& pen) {
    return [&pen](std::wstring_view text) { return pen.Measure(text); };
}

// The left end of a line.
int LineStart(const Note& note, const wxRect& box, const FlowLine& line) {
    if (note.look.alignment == kAlignCentre) return box.x + (box.width - line.width) / 2;
    const bool right = (note.look.alignment == kAlignRight) != AlignsTheOtherWay(line.text);
    return right ? box.x + box.width - line.width : box.x;
}

// False when there is no room for all of it.
bool PaintText(wxDC& dc, const Note& note, const wxRect& box, const TextLink& link) {
    if (box.width <= 0 || box.height <= 0) return false;
    wxDCClipper clip(dc, box);
    const wxColour ink = ToColour(TextInk(note.look.color, DisplayDepth()));
    const wxFont& font = NoteFont(note.look);
    const int height = LineHeight(dc, font);
    const auto most = static_cast<std::size_t>(box.height / height + 1);
    LinePen pen(dc, font);
    int y = box.y;
    for (const FlowLine& line : FlowText(note.text, box.width, MeasureWith(pen), most)) {
        const int x = LineStart(note, box, line);
        pen.Draw(line.text, x, y, ink);
        const auto first = static_cast<std::size_t>(line.text.data() - note.text.data());
        const std::size_t from = std::max(link.start, first),
                          to = std::min(link.end, first + line.text.size());
        if (from < to) {
            const std::vector<int> ends = pen.Measure(line.text);
            const int left = from > first ? ends[from - first - 1] : 0, below = y + height - height / 8;
            dc.SetPen(wxPen(ink));
            dc.DrawLine(x + left, below, x + ends[to - first - 1], below);
        }
        y += height;
    }
    return y <= box.y + box.height;
}

bool Fits(LinePen& pen, const std::wstring& line, const wxRect& box) {
    return line.empty() || pen.Measure(line).back() <= box.width;
}

// As much of it as there is room for.
void PaintTime(wxDC& dc, const Note& note, const wxRect& box, const wxColour& ink) {
    if (box.width <= 0) return;
    wxDCClipper clip(dc, box);
    const int height = LineHeight(dc, SmallFont());
    LinePen pen(dc, SmallFont());
    for (const std::wstring& form : TimeForms(note.creationTime)) {
        if (!Fits(pen, form, box)) continue;
        pen.Draw(form, box.x, box.y + (box.height - height) / 2, ink);
        return;
    }
}

// The two controls are flat until the pointer is over them.
void PaintButtonFace(wxDC& dc, const wxRect& box, const wxColour& paper, const wxColour& ink, bool hovered,
                     bool pressed) {
    if (!hovered) return;
    dc.SetPen(wxPen(ink));
    dc.SetBrush(wxBrush(paper.ChangeLightness(pressed ? 80 : 118)));
    dc.DrawRectangle(box);
}

// The glyphs are drawn for screens of 96 dots an inch, where `scale` is 1.
void PaintMinimize(wxDC& dc, const wxRect& box, const wxColour& ink, double scale) {
    const auto dots = [scale](int pixels) { return static_cast<int>(std::lround(pixels * scale)); };
    dc.SetPen(wxPen(ink, dots(2)));
    const wxPoint middle(box.x + box.width / 2, box.y + box.height / 2 + dots(2));
    const wxPoint hook[] = {
        {middle.x - dots(3), middle.y - dots(3)}, middle, {middle.x + dots(4), middle.y - dots(4)}};
    dc.DrawLines(3, hook);
}

void PaintForeground(wxDC& dc, const wxRect& box, const wxColour& paper, const wxColour& ink, bool on,
                     double scale) {
    const auto dots = [scale](int pixels) { return static_cast<int>(std::lround(pixels * scale)); };
    wxRect square(0, 0, dots(9), dots(9));
    square = square.CentreIn(box);
    dc.SetPen(wxPen(ink, dots(1)));
    dc.SetBrush(on ? wxBrush(paper.ChangeLightness(150)) : *wxTRANSPARENT_BRUSH);
    dc.DrawRectangle(square);
    if (!on) return;
    const int in = dots(2), out = in - 1;
    dc.DrawLine(square.x + in, square.y + in, square.GetRight() - out, square.GetBottom() - out);
    dc.DrawLine(square.x + in, square.GetBottom() - in, square.GetRight() - out, square.y + out);
}

// The sign of the keyboard, around the text or around a control.
void PaintFocus(wxDC& dc, std::optional<NotePart> focus, const NoteLayout& layout, double scaleX,
                double scaleY, const wxColour& ink) {
    if (!focus) return;
    const bool minimize = focus == NotePart::cmdMinimize;
    wxRect box = ToPixels(layout.lblMessage, scaleX, scaleY).Inflate(6, 1);
    int width = 1;
    if (minimize || focus == NotePart::chkForeground) {
        box = ToPixels(minimize ? layout.cmdMinimize : layout.chkForeground, scaleX, scaleY);
        width = 2;
    }
    dc.SetPen(wxPen(ink, width, width == 1 ? wxPENSTYLE_DOT : wxPENSTYLE_SOLID));
    dc.SetBrush(*wxTRANSPARENT_BRUSH);
    dc.DrawRectangle(box);
}

}  // namespace

wxColour ToColour(std::int32_t bgr) { return wxColour(static_cast<unsigned long>(bgr & 0xFFFFFF)); }

std::vector<PaintedLine> PaintedLines(const Note& note, const NoteLayout& layout, double scaleX,
                                      double scaleY) {
    const std::unique_ptr<wxDC> dc = MeasuringDC();
    const wxFont& font = NoteFont(note.look);
    const wxRect box = ToPixels(layout.lblMessage, scaleX, scaleY);
    const int height = LineHeight(*dc, font);
    LinePen pen(*dc, font);
    std::vector<PaintedLine> painted;
    int y = box.y;
    for (const FlowLine& line : FlowText(note.text, box.width, MeasureWith(pen), kMostLines)) {
        painted.push_back({line.text,
                           {LineStart(note, box, line), y, line.width, height},
                           line.text.empty() ? std::vector<int>() : pen.Measure(line.text)});
        y += height;
    }
    return painted;
}

bool ShowsWholeTime(const Note& note, const NoteLayout& layout, double scaleX, double scaleY) {
    const std::unique_ptr<wxDC> dc = MeasuringDC();
    LinePen pen(*dc, SmallFont());
    return Fits(pen, note.creationTime, ToPixels(layout.lblZeit, scaleX, scaleY));
}

wxSize NaturalTextSize(const std::wstring& text, const wxFont& font, int width, int highest) {
    const std::unique_ptr<wxDC> dc = MeasuringDC();
    const int height = LineHeight(*dc, font);
    LinePen pen(*dc, font);
    const auto most = std::min(kMostLines, static_cast<std::size_t>(highest / height) + 1);
    const auto lines = FlowText(text, width, MeasureWith(pen), most);
    int widest = 0;
    for (const FlowLine& line : lines) widest = std::max(widest, line.width);
    return wxSize(widest, static_cast<int>(lines.size()) * height);
}

bool PaintNote(wxDC& dc, const Note& note, const NoteHints& hints, const NoteLayout& layout, double scaleX,
               double scaleY) {
    const wxColour paper = ToColour(DisplayColor(note.look.color));
    const wxColour ink = ToColour(QuietInk(note.look.color, DisplayDepth()));
    const wxRect all = ToPixels({0, 0, layout.width, layout.height}, scaleX, scaleY);
    dc.SetPen(*wxTRANSPARENT_PEN);
    dc.SetBrush(wxBrush(paper));
    dc.DrawRectangle(all);

    const bool isWhole = PaintText(dc, note, ToPixels(layout.lblMessage, scaleX, scaleY), hints.link);
    PaintTime(dc, note, ToPixels(layout.lblZeit, scaleX, scaleY), ink);

    const wxRect minimize = ToPixels(layout.cmdMinimize, scaleX, scaleY);
    const wxRect foreground = ToPixels(layout.chkForeground, scaleX, scaleY);
    PaintButtonFace(dc, minimize, paper, ink, hints.hovered == NotePart::cmdMinimize, hints.pressed);
    const double scale = scaleX * kTwipsPerUsualPixel;
    PaintMinimize(dc, minimize, ink, scale);
    PaintButtonFace(dc, foreground, paper, ink, hints.hovered == NotePart::chkForeground, hints.pressed);
    PaintForeground(dc, foreground, paper, ink, note.foreground, scale);

    const wxBitmapBundle corner = LoadPicture(CornerBitmap(note.look.color, DisplayDepth()));
    if (corner.IsOk()) {
        const wxRect box = ToPixels(layout.picEcke, scaleX, scaleY);
        dc.DrawBitmap(corner.GetBitmapFor(dc.GetWindow()), box.x, box.y, true);
    }

    // The edge, up to the fold on both sides.
    const auto outline = NoteOutline(all.width, all.height, scale);
    dc.SetPen(wxPen(paper.ChangeLightness(80)));
    const wxPoint edge[] = {{outline[2].x, all.height - 1},
                            {0, all.height - 1},
                            {0, 0},
                            {all.width - 1, 0},
                            {all.width - 1, outline[0].y}};
    dc.DrawLines(5, edge);
    PaintFocus(dc, hints.focus, layout, scaleX, scaleY, ink);
    return isWhole;
}
