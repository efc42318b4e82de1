#pragma once
// Breaks a text into lines for paper, one line at a time. A line may end behind any of the characters
// " ,;.:-!?" and at the text's own line breaks; only a word that is longer than a line is cut inside. Blanks
// at the end of a line need no room.

#include <optional>
#include <string_view>
#include <vector>

#include "print/PrintedText.h"

class LineFlow {
  public:
    // The text and the function have to outlive this object; the room is in points. No line is wider or
    // higher than the room: what is larger and cannot be parted is set in a smaller font.
    LineFlow(std::wstring_view text, const PrintFont& font, double roomWidth, double roomHeight,
             const MeasurePrinted& measure);

    // The next line, placed as if at the paper's origin: parts begin at x >= 0, baselines count from the
    // line's top. A text has at least one line.
    std::optional<PrintedLine> Next();

    // Characters that are in lines already.
    std::size_t Consumed() const { return next_; }

  private:
    void StartParagraph();
    bool MeasureMore();
    bool IsBlank(std::size_t at);
    std::size_t FindEnd(double width);
    std::size_t SingleEnd();
    PrintedLine Place(std::size_t end, const PrintFont& font) const;
    PrintedLine PlaceWithinRoom(std::size_t end) const;
    double Advance(std::size_t at) const { return advances_[at - measuredFrom_]; }
    bool Measured(std::size_t at) { return at < measuredFrom_ + advances_.size() || MeasureMore(); }

    std::wstring_view text_;
    PrintFont font_;
    double roomWidth_, roomHeight_;
    const MeasurePrinted& measure_;
    std::size_t next_ = 0;          // where the next line begins
    std::size_t paragraphEnd_ = 0;  // the next line break of the text, or its end
    bool finished_ = false;
    std::vector<double> advances_;  // of the paragraph's characters from measuredFrom_ on
    std::size_t measuredFrom_ = 0;
};
