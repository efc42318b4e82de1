#include <gtest/gtest.h>

#include "model/TextFlow.h"

namespace {

// Every character is ten pixels wide, which makes widths countable.
std::vector<int> TenEach(std::wstring_view text) {
    std::vector<int> ends(text.size());
    for (std::size_t i = 0; i < ends.size(); ++i) ends[i] = static_cast<int>(i + 1) * 10;
    return ends;
}

std::vector<std::wstring> Lines(std::wstring_view text, int width) {
    std::vector<std::wstring> lines;
    for (const FlowLine& line : FlowText(text, width, TenEach)) {
        EXPECT_EQ(line.width, static_cast<int>(line.text.size()) * 10);
        lines.emplace_back(line.text);
    }
    return lines;
}

}  // namespace

TEST(TextFlow, BreaksAtLineBreaksAndBlanks) {
    struct Row {
        const wchar_t* text;
        int width;
        std::vector<std::wstring> lines;
    };
    const Row rows[] = {
        {L"", 100, {L""}},
        {L"abc", 30, {L"abc"}},
        {L"a\r\nb\rc\nd", 100, {L"a", L"b", L"c", L"d"}},
        {L"a\r\n", 100, {L"a", L""}},
        {L"\n\nx", 100, {L"", L"", L"x"}},
        {L"abc def", 60, {L"abc", L"def"}},
        {L"abc def", 30, {L"abc", L"def"}},
        {L"abc   def", 40, {L"abc", L"def"}},
        {L"abcdefgh", 30, {L"abc", L"def", L"gh"}},
        {L"ab cdefgh ij", 30, {L"ab", L"cde", L"fgh", L"ij"}},
        {L"abc", 5, {L"a", L"b", L"c"}},
        {L"ab cd\nef", 0, {L"ab cd", L"ef"}},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message()
                     << testing::PrintToString(std::wstring(row.text)) << " " << row.width);
        EXPECT_EQ(Lines(row.text, row.width), row.lines);
    }
}

TEST(TextFlow, LongParagraphsBreakTheSameAcrossPieces) {
    std::wstring text;
    std::vector<std::wstring> expected;
    for (int i = 0; i < 3000; ++i) {
        text += L"wort ";
        if (i % 2) expected.push_back(L"wort wort");
    }
    text.pop_back();
    EXPECT_EQ(Lines(text, 100), expected);
}

TEST(TextFlow, MeasuresOnlyWhatIsAskedFor) {
    const std::wstring endless(4'000'000, L'x');
    std::size_t measured = 0;
    const auto counting = [&](std::wstring_view text) {
        measured += text.size();
        return TenEach(text);
    };
    EXPECT_EQ(FlowText(endless, 300, counting, 40).size(), 40u);
    EXPECT_LT(measured, 20'000u);
    measured = 0;
    EXPECT_EQ(FlowText(endless, 0, counting).size(), 1u);
    EXPECT_LT(measured, 50'000u);
}
