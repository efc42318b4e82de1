#include "model/TextLinks.h"

#include <algorithm>
#include <optional>

namespace {

// Longest part of a mail address in front of its "@", and behind it.
constexpr std::size_t kLongestName = 64;
constexpr std::size_t kLongestDomain = 255;
// Longest web address. No browser needs to take more.
constexpr std::size_t kLongestAddress = 4096;

wchar_t Lower(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c; }

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// Blanks of every kind, marks of direction and others that show nothing.
bool IsUnseen(wchar_t c) {
    return c <= 0x20 || (c >= 0x7F && c <= 0xA0) || c == 0xAD || (c >= 0x2000 && c <= 0x200F) ||
           (c >= 0x2028 && c <= 0x202F) || (c >= 0x205F && c <= 0x206F) || c == 0x3000 || c == 0xFEFF;
}

bool IsOfAddress(wchar_t c) {
    return !IsUnseen(c) &&
           std::wstring_view(L"<>\"{}|\\^`\u00AB\u00BB\u2039\u203A").find(c) == std::wstring_view::npos &&
           !(c >= 0x2018 && c <= 0x201F);  // quotation marks
}

// Letters of other alphabets stand in names of computers and of people, too.
bool IsLetter(wchar_t c) {
    return (Lower(c) >= L'a' && Lower(c) <= L'z') || (c >= 0xC0 && c != 0xD7 && c != 0xF7 && IsOfAddress(c));
}

bool IsWord(wchar_t c) { return IsLetter(c) || IsDigit(c); }

bool StartsWith(std::wstring_view text, std::wstring_view lowerCase) {
    return text.size() >= lowerCase.size() && std::equal(lowerCase.begin(), lowerCase.end(), text.begin(),
                                                         [](wchar_t a, wchar_t b) { return a == Lower(b); });
}

// How much of the text is a web address; what closes the sentence or a bracket around it is not.
std::size_t WebLength(std::wstring_view text) {
    std::size_t length = 0;
    std::ptrdiff_t round = 0, square = 0;  // brackets that are open, below 0 when more are closed
    while (length < text.size() && IsOfAddress(text[length])) {
        round += (text[length] == L'(') - (text[length] == L')');
        square += (text[length] == L'[') - (text[length] == L']');
        if (++length > kLongestAddress) return length;
    }
    for (; length > 0; --length) {
        const wchar_t last = text[length - 1];
        if (last == L')' && round < 0) {
            ++round;
        } else if (last == L']' && square < 0) {
            ++square;
        } else if (std::wstring_view(L".,;:!?'*\u2026").find(last) == std::wstring_view::npos) {
            break;
        }
    }
    return length;
}

// The web address at the beginning of the text; one without an address is too long for one.
std::optional<TextLink> WebLink(std::wstring_view text) {
    for (const std::wstring_view scheme : {L"http://", L"https://", L"www."}) {
        if (!StartsWith(text, scheme)) continue;
        const std::wstring_view behind = text.substr(scheme.size());
        const bool whole = scheme != L"www.";
        if (behind.empty() || !(IsWord(behind[0]) || (whole && behind[0] == L'['))) return std::nullopt;
        // Without a scheme it has to look like a name of a computer, and not like that of a mail box.
        const std::wstring_view computer =
            behind.substr(0, std::min(behind.find_first_of(L"/ \r\n\t"), kLongestDomain));
        if (!whole && (computer.find(L'.') == computer.npos || computer.find(L'@') != computer.npos))
            return std::nullopt;
        const std::size_t length = WebLength(text);
        if (length <= scheme.size()) return std::nullopt;
        if (length > kLongestAddress) return TextLink{0, length};
        return TextLink{0, length, (whole ? L"" : L"http://") + std::wstring(text.substr(0, length))};
    }
    return std::nullopt;
}

bool IsOfName(wchar_t c) { return IsWord(c) || c == L'.' || c == L'_' || c == L'+' || c == L'-'; }

// Where the domain ends that begins here: words with dots between them, the last one of letters. 0: none.
std::size_t DomainLength(std::wstring_view text) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < std::min(text.size(), kLongestDomain); ++i) {
        const bool behindWord = i > 0 && text[i - 1] != L'.';
        if (IsWord(text[i]))
            length = i + 1;
        else if ((text[i] != L'.' && text[i] != L'-') || !behindWord)
            break;
    }
    const std::wstring_view domain = text.substr(0, length);
    const std::size_t dot = domain.rfind(L'.');
    const bool named =
        dot != domain.npos && length - dot > 2 &&
        std::all_of(domain.begin() + static_cast<std::ptrdiff_t>(dot) + 1, domain.end(), IsLetter);
    return named ? length : 0;
}

// The mail address whose "@" stands there. Nothing in front of `from` belongs to it.
std::optional<TextLink> MailLink(std::wstring_view text, std::size_t at, std::size_t from) {
    constexpr std::wstring_view kScheme = L"mailto:";
    std::size_t start = at;
    while (start > from && at - start < kLongestName && IsOfName(text[start - 1])) --start;
    while (start < at && !IsWord(text[start])) ++start;
    const std::size_t domain = DomainLength(text.substr(at + 1));
    if (start == at || text[at - 1] == L'.' || domain == 0) return std::nullopt;
    TextLink link{start, at + 1 + domain, std::wstring(kScheme)};
    link.address += text.substr(start, link.end - start);
    const bool named =
        start - from >= kScheme.size() && StartsWith(text.substr(start - kScheme.size()), kScheme);
    if (named) link.start -= kScheme.size();
    return link;
}

}  // namespace

std::vector<TextLink> LinksIn(std::wstring_view text) {
    std::vector<TextLink> links;
    std::size_t end = 0;  // of the last one
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::optional<TextLink> link;
        if (text[i] == L'@') {
            link = MailLink(text, i, end);
        } else if (i == end || !IsWord(text[i - 1])) {
            link = WebLink(text.substr(i));
            if (link) link->start += i, link->end += i;
        }
        if (!link) continue;
        end = link->end;
        i = end - 1;
        if (!link->address.empty()) links.push_back(std::move(*link));
    }
    return links;
}
