#include "print/LineFlow.h"

#include <algorithm>
#include <cmath>

namespace {

// Text is measured in pieces of about this many characters, so that the cost of a long paragraph stays
// linear.
constexpr std::size_t kPiece = 2048;
constexpr double kTabStop = 36;
// Differences below this come from rounding.
constexpr double kTolerance = 0.01;

bool MayBreakBehind(wchar_t c) { return std::wstring_view(L" ,;.:-!?").find(c) != std::wstring_view::npos; }

double BehindTab(double x) { return (std::floor(x / kTabStop + kTolerance) + 1) * kTabStop; }

double Width(const MeasuredText& measured) { return measured.ends.empty() ? 0 : measured.ends.back(); }

}  // namespace

LineFlow::LineFlow(std::wstring_view text, const PrintFont& font, double roomWidth, double roomHeight,
                   const MeasurePrinted& measure)
    : text_(text), font_(font), roomWidth_(roomWidth), roomHeight_(roomHeight), measure_(measure) {
    StartParagraph();
}

void LineFlow::StartParagraph() {
    paragraphEnd_ = std::min(text_.find_first_of(L"\r\n", next_), text_.size());
    advances_.clear();
    measuredFrom_ = next_;
}

// Measures another piece of the paragraph; false at its end.
bool LineFlow::MeasureMore() {
    const std::size_t from = measuredFrom_ + advances_.size();
    if (from >= paragraphEnd_) return false;
    std::size_t to = std::min(from + kPiece, paragraphEnd_);
    // Shapes of letters depend on their neighbours, a blank parts them.
    if (to < paragraphEnd_) {
        const std::size_t blank = text_.substr(from, to - from).rfind(L' ');
        if (blank != std::wstring_view::npos && blank > 0) to = from + blank + 1;
    }
    for (std::size_t start = from; start < to;) {
        if (text_[start] == L'\t') {
            advances_.push_back(kTabStop);
            ++start;
            continue;
        }
        const std::size_t end = std::min(text_.find(L'\t', start), to);
        double before = 0;
        for (const double width : measure_(text_.substr(start, end - start), font_).ends) {
            advances_.push_back(width - before);
            before = width;
        }
        start = end;
    }
    return true;
}

// A blank that bears an accent is seen, and needs its room.
bool LineFlow::IsBlank(std::size_t at) {
    if (text_[at] != L' ') return false;
    return at + 1 >= paragraphEnd_ || !Measured(at + 1) || Advance(at + 1) > 0 || text_[at + 1] == L' ';
}

// The end of the line that begins at next_ and is to be no wider than `width`. next_ itself when not even the
// first character fits.
std::size_t LineFlow::FindEnd(double width) {
    double x = 0;
    std::size_t allowed = next_;
    bool mayBreak = false;
    std::size_t at = next_;
    for (; at < paragraphEnd_ && Measured(at); ++at) {
        const double advance = Advance(at);
        const bool ownWidth = advance > 0;
        if (ownWidth && mayBreak) allowed = at;
        if (ownWidth) mayBreak = MayBreakBehind(text_[at]);
        // A tab at the end of a line leads to the end of the line.
        x = text_[at] == L'\t' && x < width ? std::min(BehindTab(x), width) : x + advance;
        if (x > width + kTolerance && ownWidth && !IsBlank(at)) return allowed > next_ ? allowed : at;
    }
    return at;
}

// The end of the shortest possible line.
std::size_t LineFlow::SingleEnd() {
    std::size_t end = next_ + 1;
    while (end < paragraphEnd_ && Measured(end) && Advance(end) <= 0) ++end;
    return end;
}

PrintedLine LineFlow::Place(std::size_t end, const PrintFont& font) const {
    PrintedLine line;
    line.begin = next_;
    line.end = end;
    std::wstring_view shown = text_.substr(next_, end - next_);
    shown = shown.substr(0, shown.find_last_not_of(L" \t") + 1);

    const MeasuredText plain = measure_({}, font);
    double ascent = plain.ascent, descent = plain.descent, x = 0, stickingOut = 0, right = 0;
    for (std::size_t start = 0; start < shown.size();) {
        if (shown[start] == L'\t') {
            x = std::max(x, std::min(BehindTab(x), roomWidth_));
            ++start;
            continue;
        }
        const std::size_t stop = std::min(shown.find(L'\t', start), shown.size());
        const std::wstring_view part = shown.substr(start, stop - start);
        const MeasuredText measured = measure_(part, font);
        line.parts.push_back({std::wstring(part), font, x, 0});
        ascent = std::max(ascent, measured.ascent);
        descent = std::max(descent, measured.descent);
        stickingOut = std::max(stickingOut, measured.left - x);
        x += Width(measured);
        right = std::max(right, x + measured.right);
        start = stop;
    }
    for (PrintedText& part : line.parts) {
        part.x += stickingOut;
        part.baseline = ascent;
    }
    line.width = stickingOut + right;
    line.height = ascent + descent;
    return line;
}

PrintedLine LineFlow::PlaceWithinRoom(std::size_t end) const {
    PrintFont font = font_;
    PrintedLine line = Place(end, font);
    while (font.size > 0.1 && (line.width > roomWidth_ + kTolerance || line.height > roomHeight_)) {
        font.size *= std::min({0.95, roomWidth_ / line.width, roomHeight_ / line.height});
        line = Place(end, font);
    }
    return line;
}

std::optional<PrintedLine> LineFlow::Next() {
    if (finished_) return std::nullopt;
    if (next_ - measuredFrom_ > 2 * kPiece) {
        advances_.erase(advances_.begin(),
                        advances_.begin() + static_cast<std::ptrdiff_t>(next_ - measuredFrom_));
        measuredFrom_ = next_;
    }
    // A line by itself can be wider than as part of its paragraph. The growing steps bound the attempts.
    std::optional<PrintedLine> line;
    double step = 1;
    for (double width = roomWidth_; !line && next_ < paragraphEnd_; step *= 2) {
        const std::size_t end = FindEnd(width);
        if (end <= SingleEnd()) break;
        PrintedLine tried = Place(end, font_);
        if (tried.width <= roomWidth_ + kTolerance && tried.height <= roomHeight_) {
            line = std::move(tried);
        } else if (tried.width > roomWidth_ + kTolerance) {
            width -= step * (tried.width - roomWidth_);
        } else {
            line = PlaceWithinRoom(end);
        }
    }
    if (!line) line = PlaceWithinRoom(next_ < paragraphEnd_ ? SingleEnd() : next_);

    next_ = line->end;
    if (next_ == paragraphEnd_) {
        if (next_ == text_.size()) {
            finished_ = true;
        } else {
            next_ += text_.substr(next_, 2) == L"\r\n" ? 2 : 1;
            StartParagraph();
        }
    }
    return line;
}
