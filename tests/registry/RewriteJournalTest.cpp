#include <gtest/gtest.h>

#include "registry/RewriteJournal.h"

namespace {

const KeyContent kNothing;
const KeyContent kNotes = {
    {L"Autostart", 1},
    {L"Note0\\Text", L"Käse & „Brot“\r\n3 € \U0001F642"},
    {L"Note0\\X", -150},
    {L"Note0\\CreationTime", L""},
    {L"AddressBookEntry0\\PCName", std::wstring(L"up to\0here", 10)},
};

TEST(RewriteJournal, GivesBackWhatItWasMadeOf) {
    for (const KeyContent& content : {kNothing, kNotes, KeyContent(1000, {L"Note0\\Text", L"x"})}) {
        const auto journal = JournalOf(BytesOf({L"mark", content}));
        ASSERT_TRUE(journal);
        EXPECT_EQ(journal->mark, L"mark");
        EXPECT_EQ(journal->content, content);
    }
    EXPECT_NE(NewMark(kNothing), NewMark(kNotes));
}

TEST(RewriteJournal, IsWholeOrNothing) {
    const std::string whole = BytesOf({L"mark", kNotes});
    for (std::size_t i = 0; i < whole.size(); ++i) {
        EXPECT_FALSE(JournalOf(whole.substr(0, i))) << "ends at " << i;
        std::string changed = whole;
        changed[i] ^= 0x20;
        EXPECT_FALSE(JournalOf(changed)) << "changed at " << i;
        EXPECT_FALSE(JournalOf(whole.substr(0, i) + std::string(whole.size() - i, '\0'))) << "zeros at " << i;
    }
    EXPECT_FALSE(JournalOf(whole + '\0'));
}

}  // namespace
