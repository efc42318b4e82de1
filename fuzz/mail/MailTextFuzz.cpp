// Recipients, subjects and notes as an address for the mail program.
#include "fuzz/support/FuzzTarget.h"
#include "mail/MailCodePage.h"
#include "mail/MailText.h"

namespace {

bool IsPlain(wchar_t c) { return c < 0x80 && std::isalnum(static_cast<int>(c)); }

std::string Decoded(const std::wstring& encoded) {
    std::string text;
    for (std::size_t i = 0; i < encoded.size(); ++i) {
        if (IsPlain(encoded[i])) {
            text += static_cast<char>(encoded[i]);
            continue;
        }
        Require(encoded[i] == L'%' && i + 2 < encoded.size() + 0, "all but letters and digits is escaped");
        const std::wstring digits = encoded.substr(i + 1, 2);
        Require(digits.find_first_not_of(L"0123456789ABCDEF") == digits.npos, "escapes are hexadecimal");
        text += static_cast<char>(std::stoi(digits, nullptr, 16));
        i += 2;
    }
    return text;
}

void Encode(FuzzInput& input) {
    const std::wstring recipient = input.Text(), subject = input.Text();
    std::vector<std::wstring> notes;
    while (!input.Empty()) notes.push_back(input.Text());

    const std::wstring body = MailBody(notes), encoded = EncodeMailBody(body);
    // A body ends in a line break, of which only the CR arrives.
    Require(Decoded(encoded) + "\n" == ToMail(body), "what is decoded is what was written");
    for (const std::wstring& note : notes) Decoded(EncodeMailBody(note));

    const std::wstring address = MailAddress(recipient, subject, encoded);
    Require(address.starts_with(L"mailto:" + recipient) && address.ends_with(L"Body=" + encoded),
            "an address has its recipient and its body");
    const std::size_t own = recipient.size() + subject.size() + encoded.size();
    Require(address.size() <= own + std::wstring_view(L"mailto:?Subject=&Body=").size(), "and nothing else");
}

const FuzzTarget kTarget("MailText", Encode);

}  // namespace
