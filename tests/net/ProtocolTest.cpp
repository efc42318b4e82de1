#include <gtest/gtest.h>

#include "base/Text.h"
#include "net/Protocol.h"

namespace {

TEST(Protocol, NumbersAreWholeAndFit) {
    const struct {
        const wchar_t* text;
        std::optional<std::int32_t> number;
    } rows[] = {
        {L"0", 0},           {L"  12  ", 12},
        {L"+8", 8},          {L"-1", -1},
        {L"007", 7},         {L"2147483647", 2147483647},
        {L"2147483648", {}}, {L"-2147483648", -2147483647 - 1},
        {L"", {}},           {L"   ", {}},
        {L"+", {}},          {L"+-1", {}},
        {L"1 2", {}},        {L"0x10", {}},
        {L"1x", {}},         {L"NOTE_FONT_SIZE", {}},
        {L"\u0661", {}},     {L"99999999999999999999999999999999999999999999999999999999999999999999999", {}},
    };
    for (const auto& row : rows) EXPECT_EQ(NumericParameter(row.text), row.number) << ToUtf8(row.text);
}

TEST(Protocol, AttributesTakeOnlyTheirValues) {
    const struct {
        const wchar_t *word, *parameter;
        std::optional<bool> taken;
    } rows[] = {
        {L"NOTE_FONT_SIZE", L"7", false},      {L"NOTE_FONT_SIZE", L"8", true},
        {L"NOTE_FONT_SIZE", L"25", true},      {L"NOTE_FONT_SIZE", L"26", false},
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
