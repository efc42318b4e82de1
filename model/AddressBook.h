#pragma once
// The computers to which the user sends notes. There is one address book in a process; the note store loads
// and saves it together with the notes (StoredImage.h).

#include <string>
#include <vector>

// One computer: the name that the user chose for it (the entry's key), its network name or address, a
// comment.
class clsAddressBookEntry {
  public:
    clsAddressBookEntry() = default;
    clsAddressBookEntry(const std::wstring& pcName, const std::wstring& ip, const std::wstring& comment)
        : pcName_(pcName), ip_(ip), comment_(comment) {}

    const std::wstring& Comment() const { return comment_; }
    void Comment(const std::wstring& text) { comment_ = text; }
    const std::wstring& IP() const { return ip_; }
    void IP(const std::wstring& text) { ip_ = text; }
    const std::wstring& PCName() const { return pcName_; }
    void PCName(const std::wstring& text) { pcName_ = text; }
    bool operator==(const clsAddressBookEntry&) const = default;

  private:
    std::wstring pcName_, ip_, comment_;
};

// All entries in the order in which they were added. No two have the same PCName; case does not count.
const std::vector<clsAddressBookEntry>& AddressBook();

// The entry of that name, or null. It stays valid until entries are added or removed; its PCName is not to be
// changed in place.
clsAddressBookEntry* GetAddressBookEntry(const std::wstring& pcName);
bool AddressBookEntryExists(const std::wstring& pcName);

// False, and nothing happens, when there is an entry of that name already.
bool AddAddressBookEntry(const clsAddressBookEntry& entry);

// False when there is none.
bool RemoveAddressBookEntry(const std::wstring& pcName);
