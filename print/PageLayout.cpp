#include "print/PageLayout.h"

#include <algorithm>
#include <utility>

namespace {

constexpr double kPointsPerMillimetre = 72 / 25.4;
constexpr double kLeastRoom = 20;  // millimetres each way
constexpr double kRuleGap = 7;     // above and below a rule
constexpr double kNumberGap = 6;   // above the number of the page
constexpr PrintFont kNumberFont{.size = 8};
constexpr double kDateSize = 0.75;  // of the note's own
constexpr double kSmallestDate = 6;
constexpr double kLargestDate = 9;
constexpr std::size_t kKeptLines = 2;  // of a note, with its heading

double Height(const MeasuredText& measured) { return measured.ascent + measured.descent; }

}  // namespace

bool PageLayout::HasRoom(const PrintRules& rules, const PaperSize& paper) {
    return paper.width - rules.left - rules.right >= kLeastRoom &&
           paper.height - rules.top - rules.bottom >= kLeastRoom;
}

PageLayout::PageLayout(const std::vector<Note>& notes, const PrintRules& rules, const PaperSize& paper,
                       MeasurePrinted measure)
    : notes_(notes),
      rules_(rules),
      measure_(std::move(measure)),
      left_(rules.left * kPointsPerMillimetre),
      right_((paper.width - rules.right) * kPointsPerMillimetre),
      top_(rules.top * kPointsPerMillimetre),
      numberHeight_(Height(measure_(L"0123456789", kNumberFont))) {
    bottom_ = (paper.height - rules.bottom) * kPointsPerMillimetre - numberHeight_ - kNumberGap;
    for (const Note& note : notes_) total_ += static_cast<double>(note.text.size());
    if (!HasRoom(rules, paper)) note_ = notes_.size();
}

PrintFont PageLayout::FontOf(const Note& note) const {
    const std::int32_t size = rules_.size.value_or(DrawnSize(note.look));
    return {static_cast<double>(size), rules_.formatting ? note.look : NoteLook{}};
}

void PageLayout::StartNote() {
    const Note& note = notes_[note_];
    font_ = FontOf(note);
    const double width = right_ - left_, height = bottom_ - top_;
    begun_ = false;
    if (rules_.dates && !note.creationTime.empty()) {
        const PrintFont small{.size = std::clamp(font_.size * kDateSize, kSmallestDate, kLargestDate)};
        LineFlow heading(note.creationTime, small, width, height, measure_);
        while (auto line = heading.Next()) {
            line->kind = PrintedLine::Date;
            waiting_.push_back(std::move(*line));
        }
    }
    lines_.emplace(note.text, font_, width, height, measure_);
    for (std::size_t i = 0; i < kKeptLines && TakeLine(); ++i) continue;
}

bool PageLayout::TakeLine() {
    auto line = lines_->Next();
    if (!line) return false;
    waiting_.push_back(std::move(*line));
    return true;
}

double PageLayout::WaitingHeight() const {
    double height = 0;
    for (const PrintedLine& line : waiting_) height += line.height;
    return height;
}

void PageLayout::Put(PrintedPage& page, PrintedLine line) {
    line.note = note_;
    line.left = left_;
    const std::int32_t alignment = line.kind == PrintedLine::Text ? font_.look.alignment : kAlignLeft;
    if (alignment == kAlignRight) line.left = right_ - line.width;
    if (alignment == kAlignCentre) line.left += (right_ - left_ - line.width) / 2;
    line.top = y_;
    for (PrintedText& part : line.parts) {
        part.x += line.left;
        part.baseline += y_;
    }
    y_ += line.height;
    page.lines.push_back(std::move(line));
}

void PageLayout::PutNumber(PrintedPage& page) {
    PrintedLine line;
    line.kind = PrintedLine::PageNumber;
    const std::wstring number = std::to_wstring(++pages_);
    const MeasuredText measured = measure_(number, kNumberFont);
    line.end = number.size();
    line.width = measured.ends.back();
    line.height = numberHeight_;
    line.left = (left_ + right_ - line.width) / 2;
    line.top = bottom_ + kNumberGap;
    line.parts.push_back({number, kNumberFont, line.left, line.top + measured.ascent});
    page.lines.push_back(std::move(line));
}

std::optional<PrintedPage> PageLayout::NextPage() {
    PrintedPage page;
    y_ = top_;
    while (note_ < notes_.size()) {
        if (!lines_) StartNote();
        const double rule = !begun_ && note_ > 0 ? 2 * kRuleGap : 0;
        const double kept = begun_ ? waiting_.front().height : rule + WaitingHeight();
        if (!page.lines.empty() && y_ + kept > bottom_) break;
        if (rule > 0 && y_ + rule + waiting_.front().height <= bottom_) {
            page.rules.push_back({left_, right_, y_ + kRuleGap});
            y_ += rule;
        }
        begun_ = true;
        while (!waiting_.empty() && (page.lines.empty() || y_ + waiting_.front().height <= bottom_)) {
            Put(page, std::move(waiting_.front()));
            waiting_.pop_front();
            if (waiting_.empty()) TakeLine();
        }
        if (!waiting_.empty()) break;
        done_ += static_cast<double>(notes_[note_].text.size());
        lines_.reset();
        ++note_;
    }
    if (page.lines.empty()) return std::nullopt;
    PutNumber(page);
    return page;
}

double PageLayout::Progress() const {
    if (total_ == 0) return note_ == notes_.size() ? 1 : 0;
    const double current = lines_ ? static_cast<double>(lines_->Consumed()) : 0;
    return std::min((done_ + current) / total_, 1.0);
}
