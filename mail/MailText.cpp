#include "mail/MailText.h"

#include "base/Homepage.h"
#include "base/Text.h"

namespace {

bool GoesUnescaped(wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9');
}

void AppendEscape(std::wstring& text, wchar_t character) {
    constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
    const auto code = static_cast<unsigned char>(ToAnsi({&character, 1})[0]);
    text += L'%';
    text += kDigits[code >> 4];
    text += kDigits[code & 15];
}

}  // namespace

std::wstring MailBody(const std::vector<std::wstring>& notes) {
    std::wstring body = L"\r\n\r\n\r\n--\r\n";
    for (const std::wstring& note : notes) body += note + L"\r\n--\r\n";
    return body + L"--\r\nNotizen aus Kivora 1.6\r\n(" + kHomepage + L")\r\n--\r\n";
}

std::wstring EncodeMailChar(const std::wstring& character) {
    std::wstring escape;
    if (character.size() == 1) AppendEscape(escape, character[0]);
    return escape;
}

std::wstring EncodeMailBody(const std::wstring& body) {
    std::wstring encoded;
    encoded.reserve(body.size() + body.size() / 2);
    for (std::size_t i = 0; i < body.size(); ++i) {
        if (GoesUnescaped(body[i])) {
            encoded += body[i];
            continue;
        }
        AppendEscape(encoded, body[i]);
        if (i > 0 && i + 2 == body.size()) break;
    }
    return encoded;
}

std::wstring MailAddress(const std::wstring& recipient, const std::wstring& subject,
                         const std::wstring& encodedBody) {
    std::wstring address = L"mailto:" + recipient;
    if (!subject.empty()) address += L"?Subject=" + subject;
    return address + (subject.empty() ? L"?" : L"&") + L"Body=" + encodedBody;
}
