#pragma once
// How notes stand on paper: page by page, each note with its creation date above it and a thin rule between
// it and the note before, the number of the page at the bottom. It knows no printer; how large text is, the
// caller's function says.

#include <deque>
#include <optional>
#include <vector>

#include "print/LineFlow.h"
#include "print/PrintedText.h"

// Millimetres.
struct PaperSize {
    double width = 210, height = 297;
};

struct PrintRules {
    double left = 15, right = 15, top = 20, bottom = 20;  // margins in millimetres
    std::optional<std::int32_t> size;                     // of all notes, in points; else each its own
    bool formatting = true;  // the notes' own styles and alignment, else plain and left
    bool dates = true;       // print each note's date
};

class PageLayout {
  public:
    // The notes have to outlive this object.
    PageLayout(const std::vector<Note>& notes, const PrintRules& rules, const PaperSize& paper,
               MeasurePrinted measure);
    PageLayout(const PageLayout&) = delete;
    PageLayout& operator=(const PageLayout&) = delete;

    // The next page, or nothing behind the last. Nothing is outside the margins, the number included.
    std::optional<PrintedPage> NextPage();

    // How much of all text is on pages already, 0 to 1.
    double Progress() const;

    // Whether the margins leave the paper enough room for text.
    static bool HasRoom(const PrintRules& rules, const PaperSize& paper);

  private:
    void StartNote();
    PrintFont FontOf(const Note& note) const;
    bool TakeLine();
    void Put(PrintedPage& page, PrintedLine line);
    void PutNumber(PrintedPage& page);
    double WaitingHeight() const;

    const std::vector<Note>& notes_;
    PrintRules rules_;
    MeasurePrinted measure_;
    double left_, right_, top_, bottom_;  // of the room for notes, in points as all below
    double numberHeight_;
    double y_ = 0;  // where the next line begins
    std::size_t note_ = 0;
    PrintFont font_;                   // of the note being set
    std::optional<LineFlow> lines_;    // its text
    std::deque<PrintedLine> waiting_;  // its lines that are on no page yet
    bool begun_ = false;               // something of the note is on a page
    std::size_t pages_ = 0;
    double total_ = 0, done_ = 0;  // characters
};
