#pragma once
// The "mailto:" address with which notes are handed to the mail program: a recipient, a subject and a body
// that carries the notes. Only the body is escaped; recipient and subject are what the user typed. Nothing
// here fails.

#include <string>
#include <vector>

// The body for notes of these texts: room for the user's own words, the notes, and where they come from.
std::wstring MailBody(const std::vector<std::wstring>& notes);

// The escape of a text of one character: for each of its bytes in the code page of mail (MailCodePage.h) "%"
// and two hexadecimal digits. Empty for a text of any other length.
std::wstring EncodeMailChar(const std::wstring& character);

// The body with everything escaped that is no ASCII letter or digit. When the last character but one is
// escaped, and is not also the first, the last one is deliberately left out: of the line break at the end
// only the CR arrives.
std::wstring EncodeMailBody(const std::wstring& body);

// The whole address; an empty subject is left out.
std::wstring MailAddress(const std::wstring& recipient, const std::wstring& subject,
                         const std::wstring& encodedBody);
