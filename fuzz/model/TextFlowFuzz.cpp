// Texts as lines of a note window.
#include "fuzz/support/FuzzTarget.h"
#include "model/TextFlow.h"

namespace {

// Letters of several widths, and some without.
std::vector<int> Widths(std::wstring_view text) {
    std::vector<int> widths;
    int x = 0;
    for (const wchar_t c : text) widths.push_back(x += static_cast<int>(c % 8));
    return widths;
}

bool IsBreak(wchar_t c) { return c == L' ' || c == L'\r' || c == L'\n'; }

void Flow(FuzzInput& input) {
    const int width = static_cast<int>(input.Byte()) - 10;
    const std::size_t most = input.Number(60);
    const std::wstring text = input.Text();
    const std::vector<FlowLine> lines = FlowText(text, width, Widths);
    Require(!lines.empty(), "there is always a line");
    const wchar_t* at = text.data();
    for (const FlowLine& line : lines) {
        Require(line.text.data() >= at, "lines follow each other");
        for (; at < line.text.data(); ++at) Require(IsBreak(*at), "nothing but breaks is left out");
        at += line.text.size();
        Require(line.text.find_first_of(L"\r\n") == line.text.npos, "no break is inside a line");
        Require(line.width == (line.text.empty() ? 0 : Widths(line.text).back()),
                "widths are what is measured");
        // One letter may be wider than the line, with those behind it that have no width.
        const bool fits = width <= 0 || line.width <= width || Widths(line.text).front() == line.width;
        const bool single = !line.text.empty() && line.text.find_first_not_of(line.text[0]) == line.text.npos;
        Require(fits || single || line.text.size() == 1, "no line is too wide");
    }
    for (; at < text.data() + text.size(); ++at) Require(IsBreak(*at), "nothing is missing at the end");
    const std::vector<FlowLine> some = FlowText(text, width, Widths, most);
    Require(some.size() == std::min(most, lines.size()) || most == 0, "no more lines than are wanted");
}

const FuzzTarget kTarget("TextFlow", Flow);

}  // namespace
