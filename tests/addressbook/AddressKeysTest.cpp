#include <gtest/gtest.h>

#include <string_view>

#include "addressbook/AddressKeys.h"

TEST(AddressKeys, TakesWhatAddressesAreMadeOf) {
    for (const wchar_t key : std::wstring_view(L"azAZ09.-\b")) EXPECT_TRUE(IsAddressKey(key)) << int(key);
    // The last ones have an "i" and a "k" for their small letters.
    for (const wchar_t key : std::wstring_view(L" _:;,/@äÄß\t\r\x1b\x7f\u0130\u212A"))
        EXPECT_FALSE(IsAddressKey(key)) << int(key);
    EXPECT_FALSE(IsAddressKey(L'\0'));
}
