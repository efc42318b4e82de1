#include <gtest/gtest.h>

#include <random>

#include "base/Text.h"
#include "mail/MailCodePage.h"
#include "mail/MailText.h"

namespace {

// The encoding as a scan that replaces in place: what it does at the ends of the text is the definition.
std::wstring ScanInPlace(std::wstring body) {
    const std::wstring plain = L"abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ1234567890";
    for (std::size_t i = 0; i <= body.size();) {
        ++i;
        const std::wstring at = i <= body.size() ? body.substr(i - 1, 1) : L"";
        if (at.empty() || plain.find(at) != std::wstring::npos) continue;
        const std::wstring before = body.substr(0, i - 1), behind = body.substr(i);
        const std::wstring escape = EncodeMailChar(at);
        if (i == 1) {
            body = escape + behind;
        } else if (i == body.size() - 1) {
            body = before + escape;
        } else {
            body = before + escape + behind;
        }
        i += escape.size() - 1;
    }
    return body;
}

}  // namespace

TEST(MailText, EscapesOneCharacter) {
    const bool utf8 = MailHasAllCharacters();
    const struct {
        const wchar_t *character, *escape;
    } rows[] = {
        {L"\r", L"%0D"},
        {L"\n", L"%0A"},
        {L" ", L"%20"},
        {L"%", L"%25"},
        {L"ä", utf8 ? L"%C3%A4" : L"%E4"},
        {L"€", utf8 ? L"%E2%82%AC" : L"%80"},
        {L"-", L"%2D"},
        {L"ÿ", utf8 ? L"%C3%BF" : L"%FF"},
        {L"Ω", utf8 ? L"%CE%A9" : L"%3F"},
        {L"a", L"%61"},
        {L"", L""},
        {L"ab", L""},
    };
    for (const auto& row : rows)
        EXPECT_EQ(EncodeMailChar(row.character), row.escape) << ToUtf8(row.character);
    EXPECT_EQ(EncodeMailChar(std::wstring(1, L'\0')), L"%00");
}

TEST(MailText, EncodesAsTheScanDoes) {
    std::mt19937 random(1);
    const std::wstring alphabet = L"aZ09 \r\n%-_.:@()?&=\"'$`;|<>äÖß€Ω";
    for (int round = 0; round < 4000; ++round) {
        std::wstring body;
        for (std::size_t length = random() % 12; body.size() < length;) {
            body += alphabet[random() % alphabet.size()];
        }
        ASSERT_EQ(EncodeMailBody(body), ScanInPlace(body)) << ToUtf8(body);
    }
    const std::wstring whole = MailBody({L"Käse & Brot\r\n100 % \"gut\"", L""});
    EXPECT_EQ(EncodeMailBody(whole), ScanInPlace(whole));
    EXPECT_TRUE(EncodeMailBody(whole).ends_with(L"%0D%0A%2D%2D%0D"));
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
