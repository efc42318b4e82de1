#pragma once
// What the programs for e-mail of the platform understand: UTF-8 on Linux, the ANSI code page on Windows.

#include <cstddef>
#include <string>
#include <string_view>

// The text in the code page of mail; '?' for what that lacks. Bytes of ASCII letters and digits stand for
// nothing else.
std::string ToMail(std::wstring_view text);

// True when ToMail lacks nothing.
bool MailHasAllCharacters();

// Of an address of more characters nobody knows whether the desktop brings it to the mail program whole.
bool IsTooLongForMail(std::wstring_view address);
