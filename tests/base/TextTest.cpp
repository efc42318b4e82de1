#include <gtest/gtest.h>

#include "base/CaseFold.h"
#include "base/DateText.h"
#include "base/Text.h"

namespace {

// The last and the first characters of each length.
constexpr const wchar_t* kSteps = L"\x7F\x80\x7FF\x800\xFFFF\U00010000";

TEST(Text, Utf8IsStrict) {
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"", L""},
        {"Käse 5 €", L"Käse 5 €"},
        {"\xF0\x9F\x98\x80", L"\U0001F600"},
        {"\xF4\x8F\xBF\xBF", L"\U0010FFFF"},
        {"\xED\x9F\xBF\xEE\x80\x80", L"\uD7FF\uE000"},
        {"\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80", kSteps},
        {"\xC0\x80", L"\uFFFD\uFFFD"},                      // too long a form of NUL
        {"\xC1\xBF", L"\uFFFD\uFFFD"},                      // of DEL
        {"\xE0\x9F\xBF", L"\uFFFD\uFFFD\uFFFD"},            // of U+07FF
        {"\xF0\x8F\xBF\xBF", L"\uFFFD\uFFFD\uFFFD\uFFFD"},  // of U+FFFF
        {"\xED\xA0\x80", L"\uFFFD\uFFFD\uFFFD"},            // a surrogate
        {"\xF4\x90\x80\x80", L"\uFFFD\uFFFD\uFFFD\uFFFD"},  // beyond the last character
        {"\xFF\xFE", L"\uFFFD\uFFFD"},
        {"a\x80z", L"a\uFFFDz"},
        {"\xC3", L"\uFFFD"},
        {"\xE2\x82", L"\uFFFD\uFFFD"},
        {"\xE2\x82z", L"\uFFFD\uFFFDz"},
        {"\xC3\xC3\xA4", L"\uFFFDä"},
    };
    for (const auto& [bytes, text] : cases) EXPECT_EQ(FromUtf8(bytes), text) << bytes;
    EXPECT_EQ(FromUtf8(std::string_view("a\0b", 3)), std::wstring(L"a\0b", 3));
}

TEST(Text, WhatIsNoCharacterIsReplaced) {
    const std::pair<std::wstring, const char*> cases[] = {
        {L"Müller & Söhne", "M\xC3\xBCller & S\xC3\xB6hne"},
        {L"\U0001F600", "\xF0\x9F\x98\x80"},
        {kSteps, "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80"},
        {{wchar_t(0xD800), wchar_t(0xDC00), wchar_t(0xDBFF), wchar_t(0xDFFF)},
         "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        {{wchar_t(0xD83D), wchar_t(0xDE00)}, "\xF0\x9F\x98\x80"},
        {{L'a', wchar_t(0xD83D)}, "a\xEF\xBF\xBD"},
        {{wchar_t(0xDE00), L'b'},
         "\xEF\xBF\xBD"
         "b"},
        {{wchar_t(0xD83D), wchar_t(0xD83D), wchar_t(0xDE00)}, "\xEF\xBF\xBD\xF0\x9F\x98\x80"},
    };
    for (const auto& [text, bytes] : cases) EXPECT_EQ(ToUtf8(text), bytes) << bytes;
    if constexpr (sizeof(wchar_t) == 4) {
        EXPECT_EQ(ToUtf8(std::wstring{wchar_t(0x110000), wchar_t(-1)}), "\xEF\xBF\xBD\xEF\xBF\xBD");
    }
}

TEST(Text, AnsiLosesNoByte) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
    EXPECT_EQ(ToAnsi(FromAnsi(bytes)), bytes);
    EXPECT_EQ(FromAnsi("\x80\x81\x84\x8D\x93\x9D\x9F\xE4\xDF"), L"€\u0081„\u008D“\u009DŸäß");
    EXPECT_EQ(ToAnsi(L"\u0100 \u20AC \u0080 \u4E2D ß"), "? \x80 ? ? \xDF");
}

TEST(Text, LineBreaks) {
    const struct {
        const wchar_t* text;
        const wchar_t* crLf;
        const wchar_t* flat;
    } cases[] = {
        {L"", L"", L""},
        {L"a\r\nb\rc\nd", L"a\r\nb\r\nc\r\nd", L"a b c d"},
        {L"\n\n", L"\r\n\r\n", L" "},
        {L"\r\r\n", L"\r\n\r\n", L"  "},
        {L"\r\n\n", L"\r\n\r\n", L"  "},
        {L"a\t\nb\tc", L"a\t\r\nb\tc", L"a b c"},
        {L" \r", L" \r\n", L"  "},
    };
    for (const auto& row : cases) {
        EXPECT_EQ(WithCrLf(row.text), row.crLf);
        EXPECT_EQ(Flattened(row.text), row.flat);
        EXPECT_EQ(StoredLength(row.text), ToUtf8(row.crLf).size());
    }
    EXPECT_EQ(StoredLength(L"äö€\U0001F600\n"), 2u + 2 + 3 + 4 + 2);
}

TEST(Text, EditsAreCutToFit) {
    const std::wstring pair = {wchar_t(0xD83D), wchar_t(0xDE00)}, other = {wchar_t(0xD83D), wchar_t(0xDE01)};
    const struct {
        std::wstring before, after;
        std::size_t limit;
        std::wstring result;
        std::size_t caret;
    } cases[] = {
        {L"", L"abc", 3, L"abc", 3},
        {L"", L"abcd", 3, L"abc", 3},
        {L"ab", L"aXYb", 3, L"aXb", 2},
        {L"abc", L"abc", 3, L"abc", 3},
        {L"abc", L"abcX", 3, L"abc", 3},
        {L"abc", L"aXYZc", 3, L"aXc", 2},  // replacing gains the room of what went
        {L"ab", L"aäb", 3, L"ab", 1},      // no half of a character
        {L"ab", L"aäb", 4, L"aäb", 2},
        {L"ab", L"a" + pair + L"b", 5, L"ab", 1},
        {pair, other + L"x", 4, other, 2},  // what both begin with is no character
        {L"ab", L"a\nb", 3, L"ab", 1},      // a break counts two
        {L"ab", L"a\nb", 4, L"a\nb", 2},
        {L"ab", L"a\r\nb", 3, L"ab", 1},
        {L"", L"12\r\n3", 3, L"12", 2},
        {L"a\r\nb", L"a\r\n\r\nb", 5, L"a\r\nb", 3},
        {L"abcdef", L"abcdeXf", 3, L"abcdef", 5},  // too long already: may not grow
        {L"abcdef", L"abdef", 3, L"abdef", 2},     // but shrink
        {L"abcdef", L"abXYZf", 3, L"abXYZf", 5},
        {L"a\nb", L"a\r\nb", 4, L"a\r\nb", 3},  // the same break in another form
    };
    for (const auto& row : cases) {
        std::size_t caret = 99;
        EXPECT_EQ(FitEdit(row.before, row.after, row.limit, &caret), row.result) << ToUtf8(row.after);
        EXPECT_EQ(caret, row.caret) << ToUtf8(row.after) << " in " << row.limit;
    }
}

TEST(CaseFold, NamesInCapitals) {
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"Note1a_", L"NOTE1A_"}, {L"äöüß", L"ÄÖÜß"}, {L"éÿœž", L"ÉŸŒŽ"},   {L"αω", L"ΑΩ"}, {L"яё", L"ЯЁ"},
        {L"āăą", L"ĀĂĄ"},         {L"ıſK", L"ıſK"},   {L"×÷1[]", L"×÷1[]"}, {L"ﬁ", L"ﬁ"},
    };
    for (const auto& [text, capitals] : cases) {
        EXPECT_EQ(InCapitals(text), capitals) << ToUtf8(text);
        EXPECT_EQ(Utf8InCapitals(ToUtf8(text)), ToUtf8(capitals));
        EXPECT_EQ(InCapitals(capitals), capitals);
    }
}

}  // namespace

TEST(TimeForms, LeaveOutTheSecondsThenTheTime) {
    const std::vector<std::wstring> rows[] = {
        {L"21.11.2026, 09:05:00", L"21.11.2026, 09:05", L"21.11.2026"},
        {L"21.11.2026, 09.05.00", L"21.11.2026, 09.05", L"21.11.2026"},
        {L"11/21/2026, 09:05:00 AM", L"11/21/2026, 09:05 AM", L"11/21/2026"},
        {L"21.11.2026, 09:05", L"21.11.2026"},
        {L"gestern"},
        {L""},
    };
    for (const auto& row : rows) EXPECT_EQ(TimeForms(row.front()), row) << ToUtf8(row.front());
}
