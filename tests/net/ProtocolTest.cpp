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

TEST(Protocol, CommandsOfANote) {
    const NoteLook look{.size = 10, .bold = true, .alignment = kAlignCentre, .color = kGreen};
    const std::vector<std::wstring> expected = {
        L"NOTE_NEW",           L"NOTE_TEXT a\rb\nc\r",    L"NOTE_TEXT  Milch, Brot",
        L"NOTE_TEXT ",         L"NOTE_FONT_SIZE 10",      L"NOTE_FONT_BOLD 1",
        L"NOTE_FONT_ITALIC 0", L"NOTE_FONT_UNDERLINED 0", L"NOTE_FONT_ALIGNMENT 2",
        L"NOTE_COLOR 65280",   L"NOTE_FINISHED"};
    Note note;
    note.text = L"a\rb\nc\r\r\n Milch, Brot\r\n";
    note.look = look;
    EXPECT_EQ(CommandsFor(note), expected);
}

}  // namespace
