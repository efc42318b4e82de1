#include <gtest/gtest.h>

#include "base/Text.h"
#include "model/NoteSearch.h"

namespace {

std::vector<SearchedNote> Notes(const std::vector<std::wstring>& texts) {
    std::vector<SearchedNote> notes;
    for (const std::wstring& text : texts)
        notes.push_back({std::to_wstring(notes.size()), L"heute", {.text = text}});
    return notes;
}

std::wstring Found(const NoteSearch& search) {
    std::wstring keys;
    for (std::size_t i = 0; i < search.CountFound(); ++i) keys += search.Found(i).key;
    return keys;
}

}  // namespace

TEST(NoteSearch, FindsWhatPeopleMean) {
    const struct {
        const wchar_t *text, *words;
        bool found;
    } rows[] = {
        {L"Käse", L"KÄSE", true},
        {L"Käse", L"kaese", true},
        {L"KAESE", L"käse", true},
        {L"Ka\u0308se", L"käse", true},
        {L"O\u0308l, U\u0308bung", L"öl, oel ueb", true},
        {L"Ofen, Uhr", L"oe", false},
        {L"Ofen, Uhr", L"of uhr", true},
        {L"Käse", L"ka\u0308s", true},
        {L"Käse", L"kase", false},
        {L"Öl und Übung", L"oel uebung", true},
        {L"Straße", L"STRASSE", true},
        {L"STRASSE", L"straße", true},
        {L"STRAẞE", L"strasse", true},
        {L"Milch\r\nund Brot", L" brot \tmilch ", true},
        {L"Milch\r\nund Brot", L"brot bier", false},
        {L"Ωmega", L"ωME", true},
        {L"\U0001F4CC Nadel", L"\U0001F4CC", true},
        {L"", L"", true},
        {L"", L"x", false},
    };
    for (const auto& row : rows) {
        NoteSearch search;
        search.Search(Notes({row.text}));
        search.Find(row.words);
        EXPECT_EQ(search.CountFound(), row.found ? 1u : 0u)
            << ToUtf8(row.words) << " in " << ToUtf8(row.text);
    }
}

TEST(NoteSearch, FollowsWhatIsTypedAndWhatChanges) {
    NoteSearch search;
    search.Search(Notes({L"Brot", L"Bier", L"Wein", L"Bienen"}));
    const std::pair<const wchar_t*, const wchar_t*> typed[] = {
        {L"b", L"013"}, {L"bi", L"13"}, {L"bie", L"13"}, {L"bie r", L"1"},
        {L"bi", L"13"}, {L"w", L"2"},   {L"", L"0123"}};
    for (const auto& [words, found] : typed) {
        search.Find(words);
        EXPECT_EQ(Found(search), found) << ToUtf8(words);
    }
    search.Find(L"brot");
    EXPECT_TRUE(search.Search(Notes({L"Brot", L"Brot und Bier"})));
    EXPECT_EQ(Found(search), L"01");
    EXPECT_FALSE(search.Search(Notes({L"Brot", L"Brot und Bier"})));
    EXPECT_TRUE(search.Search(Notes({L"Bier", L"Brot und Bier"})));
    EXPECT_EQ(Found(search), L"1");
    search.Find(L"");
    EXPECT_EQ(Found(search), L"01");
}

TEST(NoteSearch, ListsFirstLinesAndSortsByDates) {
    EXPECT_EQ(FirstLine(L" \r\n\tMilch\tund Brot\r\nEier"), L"Milch und Brot");
    EXPECT_EQ(FirstLine(L"\nMilch\nBrot"), L"Milch");
    EXPECT_EQ(FirstLine(L" \r\n"), L"");
    const wchar_t* const rising[] = {L"gestern",
                                     L"31.12.2024, 23:59:59",
                                     L"1.2.2025 09:05:00",
                                     L"21.11.2025, 09:05:00",
                                     L"21.11.2025, 10:00:00",
                                     L"01.01.2026, 00:00:00"};
    for (std::size_t i = 1; i < std::size(rising); ++i)
        EXPECT_LT(WrittenWhen(rising[i - 1]), WrittenWhen(rising[i])) << ToUtf8(rising[i]);
    for (const wchar_t* other :
         {L"", L"11/21/2026, 09:05:00 AM", L"1.2.3.4.5.6.7", L"99999999999999999999.1.1, 1:1:1"})
        EXPECT_EQ(WrittenWhen(other), 0) << ToUtf8(other);
}
