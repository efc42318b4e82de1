#include <gtest/gtest.h>

#include "base/Text.h"
#include "model/TextLinks.h"

using namespace std::string_literals;

TEST(TextLinks, AreWhatCanBeOpened) {
    const struct {
        std::wstring text;
        std::vector<std::pair<std::wstring, std::wstring>> links;  // as they stand there, and what they open
    } rows[] = {
        {L"", {}},
        {L"Milch, Brot; 3 @ 2 Euro. http:// www. a@b", {}},
        {L"http://a.de", {{L"http://a.de", L"http://a.de"}}},
        {L"HTTPS://A.DE/x?y=1&z=%20#t.", {{L"HTTPS://A.DE/x?y=1&z=%20#t", L"HTTPS://A.DE/x?y=1&z=%20#t"}}},
        {L"siehe www.a.de, und", {{L"www.a.de", L"http://www.a.de"}}},
        {L"(http://a.de/b_(c))", {{L"http://a.de/b_(c)", L"http://a.de/b_(c)"}}},
        {L"<http://a.de>\"http://b.de\"",
         {{L"http://a.de", L"http://a.de"}, {L"http://b.de", L"http://b.de"}}},
        {L"„http://a.de“", {{L"http://a.de", L"http://a.de"}}},
        {L"[http://a.de/x[1]]", {{L"http://a.de/x[1]", L"http://a.de/x[1]"}}},
        {L"http://[::1]:80/", {{L"http://[::1]:80/", L"http://[::1]:80/"}}},
        {L"http://müller.de/ä", {{L"http://müller.de/ä", L"http://müller.de/ä"}}},
        {L"http://a.de/\u202Eb", {{L"http://a.de/", L"http://a.de/"}}},
        {L"http://a.de/\r\nb", {{L"http://a.de/", L"http://a.de/"}}},
        {L"xhttp://a.de file:///etc/passwd javascript:alert(1) ftp://a.de smb://a.de", {}},
        {L"http://-a http://?", {}},
        {L"www.a www.a@b.de", {{L"www.a@b.de", L"mailto:www.a@b.de"}}},
        {L"Anna.B+x@mail.a-b.de.", {{L"Anna.B+x@mail.a-b.de", L"mailto:Anna.B+x@mail.a-b.de"}}},
        {L"a_b@c-1.d2.de", {{L"a_b@c-1.d2.de", L"mailto:a_b@c-1.d2.de"}}},
        {L"a@b.de,c@d.de", {{L"a@b.de", L"mailto:a@b.de"}, {L"c@d.de", L"mailto:c@d.de"}}},
        {L"mailto:a@b.de?attach=/etc/passwd", {{L"mailto:a@b.de", L"mailto:a@b.de"}}},
        {L"mailto:niemand", {}},
        {L"-a@b.de a.@b.de a@b.1 a@.de a@b..de @b.de", {{L"a@b.de", L"mailto:a@b.de"}}},
        {L"https://x.org/@anna", {{L"https://x.org/@anna", L"https://x.org/@anna"}}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(ToUtf8(row.text));
        std::vector<std::pair<std::wstring, std::wstring>> links;
        for (const TextLink& link : LinksIn(row.text))
            links.emplace_back(row.text.substr(link.start, link.end - link.start), link.address);
        EXPECT_EQ(links, row.links);
    }
}

TEST(TextLinks, EndAtWhatNobodySees) {
    for (const wchar_t unseen :
         L"\t \x7F\xA0\xAD\x2000\x200F\x2028\x202F\x205F\x206F\x3000\xFEFF\x201E\xAB<"s)
        EXPECT_EQ(LinksIn(std::wstring(L"www.a.de/b") + unseen + L"c").at(0).end, 10u) << std::hex << +unseen;
}

TEST(TextLinks, CostGrowsWithTheText) {
    // Each row would take minutes if every place were compared with every other.
    for (const std::wstring piece : {L"a", L"a@", L"www.", L"http://", L"a.b-", L"http://?", L"www.a@"}) {
        std::wstring text;
        while (text.size() < 100'000) text += piece;
        LinksIn(text);
        LinksIn(L"http://" + piece + std::wstring(4000, L')'));
    }
}
