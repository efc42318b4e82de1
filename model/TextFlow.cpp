#include "model/TextFlow.h"

#include <algorithm>

namespace {

// Text is measured in pieces of this many characters, so that the part of a long text that nobody sees is
// never measured. A piece is far longer than a line on any screen.
constexpr std::size_t kPiece = 2048;
// No screen is wider; what is beyond makes no difference.
constexpr int kWidest = 100'000;

// Keeps both halves of a character beyond the 16-bit plane on one line.
bool SplitsPair(std::wstring_view text, std::size_t at) {
    if constexpr (sizeof(wchar_t) == 2) {
        return at > 0 && at < text.size() && text[at] >= 0xDC00 && text[at] <= 0xDFFF;
    } else {
        return false;
    }
}

// A paragraph with the widths of the piece that is being broken into lines.
class Paragraph {
  public:
    Paragraph(std::wstring_view text, const MeasureText& measure) : text_(text), measure_(measure) {}

    std::wstring_view Text() const { return text_; }

    // The first character behind `start` that does not fit into `width` pixels, or the paragraph's end.
    std::size_t FitsUntil(std::size_t start, int width) {
        if (start < pieceStart_ || start >= pieceStart_ + ends_.size()) MeasureFrom(start);
        std::size_t end = Search(start, width);
        if (end == pieceStart_ + ends_.size() && end < text_.size() && start != pieceStart_) {
            MeasureFrom(start);
            end = Search(start, width);
        }
        return end;
    }

    int Width(std::size_t start, std::size_t end) const { return Offset(end) - Offset(start); }

  private:
    void MeasureFrom(std::size_t start) {
        pieceStart_ = start;
        ends_ = measure_(text_.substr(start, kPiece));
    }
    int Offset(std::size_t index) const { return index == pieceStart_ ? 0 : ends_[index - pieceStart_ - 1]; }
    std::size_t Search(std::size_t start, int width) const {
        const auto from = ends_.begin() + static_cast<std::ptrdiff_t>(start - pieceStart_);
        const auto end = std::upper_bound(from, ends_.end(), Offset(start) + width);
        return pieceStart_ + static_cast<std::size_t>(end - ends_.begin());
    }

    std::wstring_view text_;
    const MeasureText& measure_;
    std::size_t pieceStart_ = 0;
    std::vector<int> ends_;
};

// The whole paragraph as one line.
FlowLine Unbroken(std::wstring_view text, const MeasureText& measure) {
    int width = 0;
    for (std::size_t at = 0; at < text.size() && width < kWidest; at += kPiece) {
        width += measure(text.substr(at, kPiece)).back();
    }
    return {text, width};
}

void FlowParagraph(std::wstring_view text, int width, const MeasureText& measure, std::size_t maxLines,
                   std::vector<FlowLine>& lines) {
    if (text.empty() || width <= 0) {
        lines.push_back(Unbroken(text, measure));
        return;
    }
    Paragraph paragraph(text, measure);
    std::size_t start = 0;
    while (start < text.size() && lines.size() < maxLines) {
        std::size_t end = paragraph.FitsUntil(start, width);
        std::size_t next = end;
        if (end < text.size()) {
            if (text[end] != L' ') {
                const std::size_t blank = text.substr(start, end - start).rfind(L' ');
                if (blank != std::wstring_view::npos && blank > 0) {
                    end = start + blank;
                } else {
                    end = std::max(end, start + 1);
                    if (SplitsPair(text, end)) ++end;
                }
            }
            next = end;
            while (end > start && text[end - 1] == L' ') --end;
            while (next < text.size() && text[next] == L' ') ++next;
        }
        lines.push_back({text.substr(start, end - start), paragraph.Width(start, end)});
        start = next;
    }
}

}  // namespace

std::vector<FlowLine> FlowText(std::wstring_view text, int width, const MeasureText& measure,
                               std::size_t maxLines) {
    std::vector<FlowLine> lines;
    std::size_t start = 0;
    for (;;) {
        std::size_t end = text.find_first_of(L"\r\n", start);
        const bool last = end == std::wstring_view::npos;
        if (last) end = text.size();
        FlowParagraph(text.substr(start, end - start), width, measure, maxLines, lines);
        if (last || lines.size() >= maxLines) return lines;
        start = end + (text[end] == L'\r' && end + 1 < text.size() && text[end + 1] == L'\n' ? 2 : 1);
    }
}
