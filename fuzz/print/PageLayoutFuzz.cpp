// Notes on paper of any size, in a font whose letters have any measures.
#include "fuzz/support/FuzzTarget.h"
#include "print/PageLayout.h"

namespace {

constexpr double kPoint = 25.4 / 72;  // millimetres
constexpr double kAccuracy = 0.02;

// Letters of many widths, some without, some higher than the font and some wider than any line, pairs that
// move together, and slanted ink that sticks out.
MeasuredText Measure(std::wstring_view text, const PrintFont& font) {
    MeasuredText measured;
    double x = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.substr(0, i + 1).ends_with(L"AV")) x -= font.size * 0.2;
        measured.ends.push_back(x +=
                                font.size * (text[i] == L'W' ? 40 : 0.1 * static_cast<double>(text[i] % 9)));
    }
    measured.ascent = font.size * (text.find(L'T') == text.npos ? 0.9 : 90);
    measured.descent = font.size * 0.25;
    if (font.look.italic && !text.empty()) measured.left = font.size * 0.05, measured.right = font.size * 0.2;
    return measured;
}

void RequireInside(const PrintedPage& page, const PrintRules& rules, const PaperSize& paper) {
    const double left = rules.left / kPoint, right = (paper.width - rules.right) / kPoint;
    double below = rules.top / kPoint;
    for (const PrintedLine& line : page.lines) {
        Require(line.top >= below - kAccuracy, "lines stand below each other");
        below = line.top + line.height;
        Require(line.left >= left - kAccuracy && line.left + line.width <= right + kAccuracy,
                "nothing is outside the margins");
        for (const PrintedText& part : line.parts) {
            const MeasuredText ink = Measure(part.text, part.font);
            Require(part.x - ink.left >= line.left - kAccuracy &&
                        part.x + ink.ends.back() + ink.right <= line.left + line.width + kAccuracy &&
                        part.baseline - ink.ascent >= line.top - kAccuracy &&
                        part.baseline + ink.descent <= below + kAccuracy,
                    "no letter sticks out of its line");
        }
    }
    Require(below <= (paper.height - rules.bottom) / kPoint + kAccuracy, "nothing is below the margin");
    Require(page.lines.back().kind == PrintedLine::PageNumber, "each page has its number");
}

// Takes the line for the next one of its note's text.
void RequireNext(const std::wstring& text, const PrintedLine& line, std::size_t& at) {
    while (at < line.begin && (text[at] == L'\r' || text[at] == L'\n')) ++at;
    Require(line.begin == at && line.end >= at && line.end <= text.size(), "no character is missing");
    std::wstring shown, written;
    for (const PrintedText& part : line.parts) shown += part.text;
    for (std::size_t i = line.begin; i < line.end; ++i)
        if (text[i] != L'\t') written += text[i];
    Require(written.starts_with(shown) && written.find_first_not_of(L' ', shown.size()) == written.npos,
            "what is written is what was read");
    at = line.end;
}

void Print(FuzzInput& input) {
    PrintRules rules;
    for (double* margin : {&rules.left, &rules.right, &rules.top, &rules.bottom})
        *margin = static_cast<double>(input.Number(60));
    if (const std::size_t size = input.Number(40); size > 0) rules.size = static_cast<std::int32_t>(size);
    const std::uint8_t flags = input.Byte();
    rules.formatting = flags & 1;
    rules.dates = flags & 2;
    const PaperSize paper{50.0 + input.Byte(), 50.0 + input.Byte()};
    std::vector<Note> notes;
    while (!input.Empty()) {
        const std::uint8_t look = input.Byte();
        Note note{.text = input.Text(), .creationTime = input.Text()};
        note.look.italic = look & 1;
        note.look.alignment = look >> 1 & 3;
        note.look.size = look;
        notes.push_back(std::move(note));
    }

    PageLayout layout(notes, rules, paper, Measure);
    std::vector<std::size_t> ends(notes.size()), dates(notes.size());
    double progress = 0;
    std::size_t pages = 0, most = 2;
    for (const Note& note : notes) most += note.text.size() + note.creationTime.size() + 2;
    while (const auto page = layout.NextPage()) {
        Require(++pages <= most, "there is an end of pages");
        RequireInside(*page, rules, paper);
        Require(page->lines.back().parts[0].text == std::to_wstring(pages), "pages are counted");
        for (const PrintedLine& line : page->lines) {
            if (line.kind == PrintedLine::Text) RequireNext(notes[line.note].text, line, ends[line.note]);
            if (line.kind == PrintedLine::Date)
                RequireNext(notes[line.note].creationTime, line, dates[line.note]);
        }
        Require(layout.Progress() >= progress && layout.Progress() <= 1, "it goes on");
        progress = layout.Progress();
    }
    Require(notes.empty() || PageLayout::HasRoom(rules, paper) == (pages > 0),
            "where there is room it is printed");
    if (pages == 0) return;
    const auto isWhole = [](const std::wstring& text, std::size_t end) {
        return text.find_first_not_of(L"\r\n", end) == text.npos;
    };
    for (std::size_t i = 0; i < notes.size(); ++i) {
        Require(isWhole(notes[i].text, ends[i]), "no text is missing");
        Require(isWhole(rules.dates ? notes[i].creationTime : L"", dates[i]),
                "dates are there as was wished");
    }
}

const FuzzTarget kTarget("PageLayout", Print);

}  // namespace
