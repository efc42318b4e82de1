#include <gtest/gtest.h>

#include "base/Text.h"
#include "net/Protocol.h"

namespace {

TEST(Protocol, SizesAreWholeNumbersWithinTheirBounds) {
    const std::pair<const wchar_t*, int> rows[] = {
        {L"8", 8},      {L"25", 25},        {L"  13  ", 13},
        {L"+8", 8},     {L"013", 13},       {L"7", 0},
        {L"26", 0},     {L"-8", 0},         {L"", 0},
        {L"   ", 0},    {L"+", 0},          {L"+-8", 0},
        {L"1 2", 0},    {L"0x10", 0},       {L"8x", 0},
        {L"\u0668", 0}, {L"4294967304", 0}, {L"99999999999999999999", 0}};
    for (const auto& [parameter, size] : rows) {
        NoteLook look;
        EXPECT_EQ(SetAttribute(look, L"NOTE_FONT_SIZE", parameter), size != 0) << ToUtf8(parameter);
        EXPECT_EQ(look.size, size ? size : kDefaultFontSize) << ToUtf8(parameter);
    }
}

TEST(Protocol, AttributesTakeOnlyTheirValues) {
    const struct {
        const wchar_t *word, *parameter;
        std::optional<bool> taken;
    } rows[] = {
        {L"NOTE_FONT_BOLD", L"1", true},       {L"NOTE_FONT_BOLD", L"2", false},
        {L"NOTE_FONT_ITALIC", L"0", true},     {L"NOTE_FONT_ITALIC", L"ja", false},
        {L"NOTE_FONT_UNDERLINED", L"1", true}, {L"NOTE_FONT_ALIGNMENT", L"2", true},
        {L"NOTE_FONT_ALIGNMENT", L"3", false}, {L"NOTE_FONT_ALIGNMENT", L"-1", false},
        {L"NOTE_COLOR", L"255", true},         {L"NOTE_COLOR", L"65535", true},
        {L"NOTE_COLOR", L"16776960", true},    {L"NOTE_COLOR", L"16711680", false},
        {L"NOTE_COLOR", L"0", false},          {L"note_color", L"255", {}},
    };
    for (const auto& row : rows) {
        NoteLook look;
        EXPECT_EQ(SetAttribute(look, row.word, row.parameter), row.taken)
            << ToUtf8(row.word) << ' ' << ToUtf8(row.parameter);
        EXPECT_EQ(look == NoteLook(), row.taken != true || row.parameter == std::wstring(L"0") ||
                                          row.parameter == std::wstring(L"65535"))
            << ToUtf8(row.word) << ' ' << ToUtf8(row.parameter);
    }
}

}  // namespace
