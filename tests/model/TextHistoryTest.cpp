#include <gtest/gtest.h>

#include <vector>

#include "model/TextHistory.h"

namespace {

using Texts = std::vector<std::wstring>;

// The texts and carets that undoing everything comes by, the caret marked by '|'.
Texts UndoneTexts(TextHistory& history) {
    Texts texts;
    while (const auto caret = history.Undo())
        texts.push_back(history.Text().substr(0, *caret) + L'|' + history.Text().substr(*caret));
    return texts;
}

}  // namespace

TEST(TextHistory, GoesBackInStepsThatPeopleExpect) {
    const struct {
        const char* name;
        std::wstring begin;
        Texts changes, undone;
    } rows[] = {
        {"nothing", L"a", {L"a"}, {}},
        {"a word", L"", {L"a", L"ab", L"abc"}, {L"|"}},
        {"words", L"", {L"a", L"ab", L"ab ", L"ab c", L"ab c\n", L"ab c\nd"}, {L"ab c\n|", L"ab |", L"|"}},
        {"typing elsewhere", L"ab", {L"abc", L"xabc"}, {L"|abc", L"ab|"}},
        {"pasted text", L"ac", {L"abbbc", L"abbbcd"}, {L"abbbc|", L"a|c"}},
        {"pasted, then typed", L"", {L"abc", L"abcd"}, {L"abc|", L"|"}},
        {"blanks", L"", {L"a", L"a ", L"a  ", L"a  b"}, {L"a  |", L"|"}},
        {"deleted elsewhere", L"abcdef", {L"acdef", L"acdf"}, {L"acde|f", L"ab|cdef"}},
        {"backspace", L"abcd", {L"abc", L"ab", L"a"}, {L"abcd|"}},
        {"delete", L"abcd", {L"acd", L"ad"}, {L"abc|d"}},
        {"typed, then deleted", L"", {L"a", L"ab", L"a"}, {L"ab|", L"|"}},
        {"selection typed over", L"a Wort b", {L"a x b", L"a xy b"}, {L"a x| b", L"a Wort| b"}},
        {"all gone", L"abc", {L"", L"z"}, {L"|", L"abc|"}},
        {"emoji", L"\U0001F600", {L"\U0001F600a", L"a"}, {L"\U0001F600|a", L"\U0001F600|"}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        TextHistory history(row.begin);
        for (const std::wstring& text : row.changes) history.Change(text);
        EXPECT_EQ(UndoneTexts(history), row.undone);
        EXPECT_EQ(history.Text(), row.begin);
        while (history.Redo()) {
        }
        EXPECT_EQ(history.Text(), row.changes.back());
        EXPECT_EQ(UndoneTexts(history), row.undone) << "after doing all again";
    }
}

TEST(TextHistory, ANewChangeEndsWhatCanBeDoneAgain) {
    TextHistory history(L"a");
    history.Change(L"ab");
    EXPECT_EQ(history.Undo(), 1u);
    history.Change(L"ac");
    EXPECT_EQ(history.Redo(), std::nullopt);
    // What follows an undoing is a step of its own.
    EXPECT_EQ(history.Undo(), 1u);
    EXPECT_EQ(history.Redo(), 2u);
    history.Change(L"acd");
    EXPECT_EQ(history.Undo(), 2u);
    EXPECT_EQ(history.Text(), L"ac");
}

TEST(TextHistory, ForgetsTheOldestChanges) {
    const std::size_t size = 1000, rounds = 3 * TextHistory::kMostHistory / size;
    TextHistory history;
    for (std::size_t i = 0; i < rounds; ++i) history.Change(std::wstring(i % 2 ? 0 : size, L'x'));
    EXPECT_EQ(UndoneTexts(history).size(), TextHistory::kMostHistory / size);
    TextHistory one;
    one.Change(std::wstring(TextHistory::kMostHistory + 1, L'x'));
    EXPECT_EQ(one.Undo(), std::nullopt);
    one.Change(L"y");
    one.Change(L"yz");
    EXPECT_TRUE(one.Undo());
    EXPECT_EQ(one.Text(), L"y");
}
