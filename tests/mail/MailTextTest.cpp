#include <gtest/gtest.h>

#include "base/Text.h"
#include "mail/MailCodePage.h"
#include "mail/MailText.h"

TEST(MailText, EscapesOneCharacter) {
    const bool utf8 = MailHasAllCharacters();
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"\n", L"%0A"},
        {L"ä", utf8 ? L"%C3%A4" : L"%E4"},
        {L"€", utf8 ? L"%E2%82%AC" : L"%80"},
        {L"Ω", utf8 ? L"%CE%A9" : L"%3F"},
        {L"a", L"%61"},
        {L"", L""},
        {L"ab", L""},
    };
    for (const auto& [character, escape] : rows)
        EXPECT_EQ(EncodeMailChar(character), escape) << ToUtf8(character);
}

// Behind an escaped character the last one of three and more gets lost, as it always did.
TEST(MailText, EncodesTheBody) {
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"", L""},           {L"a", L"a"},
        {L" ", L"%20"},       {L" b", L"%20b"},
        {L"a b", L"a%20"},    {L"ab ", L"ab%20"},
        {L"aZ09", L"aZ09"},   {L"a-\r\n", L"a%2D%0D"},
        {L"a%20", L"a%2520"}, {L" \"'$`<>x", L"%20%22%27%24%60%3C%3E"},
    };
    for (const auto& [body, encoded] : rows) EXPECT_EQ(EncodeMailBody(body), encoded) << ToUtf8(body);
}

TEST(MailText, ComposesTheBody) {
    const std::wstring begin = L"\r\n\r\n\r\n--\r\n";
    const std::wstring none = MailBody({});
    ASSERT_TRUE(none.starts_with(begin + L"--\r\nNotizen aus Kivora 1.6\r\n(http"));
    ASSERT_TRUE(none.ends_with(L")\r\n--\r\n"));
    const std::wstring trailer = none.substr(begin.size());
    EXPECT_EQ(MailBody({L"eins\r\nzwei", L"drei"}),
              begin + L"eins\r\nzwei\r\n--\r\ndrei\r\n--\r\n" + trailer);
}

TEST(MailText, TakesRecipientAndSubjectAsTheyAre) {
    EXPECT_EQ(MailAddress(L"", L"", L"x"), L"mailto:?Body=x");
    EXPECT_EQ(MailAddress(L"a@b", L"", L"x"), L"mailto:a@b?Body=x");
    EXPECT_EQ(MailAddress(L"Jörg <a@b>", L"Grüße & \"mehr\" 5 %", L"x"),
              L"mailto:Jörg <a@b>?Subject=Grüße & \"mehr\" 5 %&Body=x");
}
