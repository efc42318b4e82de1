#pragma once
// What the tests of the address book share.

#include "model/AddressBook.h"

inline clsAddressBookEntry Entry(const std::wstring& name, const std::wstring& ip = L"",
                                 const std::wstring& comment = L"") {
    return {name, ip, comment};
}

inline void EmptyAddressBook() {
    while (!AddressBook().empty()) RemoveAddressBookEntry(AddressBook().back().PCName());
}
