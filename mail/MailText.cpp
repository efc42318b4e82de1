#include "mail/MailText.h"

#include "base/Homepage.h"
#include "mail/MailCodePage.h"

namespace {

bool GoesUnescaped(wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9');
}

void AppendEscape(std::wstring& text, char byte) {
    constexpr wchar_t kDigits[] = L"0123456789ABCDEF";
    const auto code = static_cast<unsigned char>(byte);
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
    if (character.size() != 1) return escape;
    for (const char byte : ToMail(character)) AppendEscape(escape, byte);
    return escape;
}

std::wstring EncodeMailBody(const std::wstring& body) {
    const bool dropsLast = body.size() > 2 && !GoesUnescaped(body[body.size() - 2]);
    const std::string bytes = ToMail({body.data(), body.size() - (dropsLast ? 1 : 0)});
    std::wstring encoded;
    encoded.reserve(bytes.size() + bytes.size() / 2);
    for (const char byte : bytes) {
        if (GoesUnescaped(static_cast<unsigned char>(byte)))
            encoded += static_cast<wchar_t>(byte);
        else
            AppendEscape(encoded, byte);
    }
    return encoded;
}

std::wstring MailAddress(const std::wstring& recipient, const std::wstring& subject,
                         const std::wstring& encodedBody) {
    std::wstring address = L"mailto:" + recipient;
    if (!subject.empty()) address += L"?Subject=" + subject;
    return address + (subject.empty() ? L"?" : L"&") + L"Body=" + encodedBody;
}
