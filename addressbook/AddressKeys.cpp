#include "addressbook/AddressKeys.h"

#include <string_view>

bool IsAddressKey(wchar_t character) {
    constexpr std::wstring_view kAllowed = L"\babcdefghijklmnopqrstuvwxyz0123456789.-";
    // Of other alphabets some capitals have small letters among these.
    const wchar_t lower = character >= L'A' && character <= L'Z' ? character - L'A' + L'a' : character;
    return kAllowed.find(lower) != kAllowed.npos;
}
