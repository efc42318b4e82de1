#include "model/AddressBook.h"

#include <cstddef>
#include <unordered_map>

#include "base/CaseFold.h"
#include "registry/clsRegistry.h"

namespace {

const std::wstring kSettings = L"HKLM\\Software\\Kivora\\1.5\\";
const std::wstring kEntryPrefix = L"AddressBookEntry";

struct Book {
    std::vector<clsAddressBookEntry> entries;
    std::unordered_map<std::wstring, std::size_t> positions;  // by the PCName in capitals
};

Book& TheBook() {
    static Book book;
    return book;
}

// The subkeys that hold entries, in the registry's order.
std::vector<std::wstring> EntryKeys() {
    std::vector<std::wstring> names;
    Registry().EnumKeys(kSettings, names);
    std::erase_if(names, [](const std::wstring& name) { return !name.starts_with(kEntryPrefix); });
    return names;
}

}  // namespace

const std::vector<clsAddressBookEntry>& AddressBook() { return TheBook().entries; }

clsAddressBookEntry* GetAddressBookEntry(const std::wstring& pcName) {
    Book& book = TheBook();
    const auto found = book.positions.find(InCapitals(pcName));
    return found == book.positions.end() ? nullptr : &book.entries[found->second];
}

bool AddressBookEntryExists(const std::wstring& pcName) { return GetAddressBookEntry(pcName) != nullptr; }

bool AddAddressBookEntry(const clsAddressBookEntry& entry) {
    Book& book = TheBook();
    if (!book.positions.try_emplace(InCapitals(entry.PCName()), book.entries.size()).second) return false;
    book.entries.push_back(entry);
    return true;
}

bool RemoveAddressBookEntry(const std::wstring& pcName) {
    Book& book = TheBook();
    const auto found = book.positions.find(InCapitals(pcName));
    if (found == book.positions.end()) return false;
    const std::size_t removed = found->second;
    book.entries.erase(book.entries.begin() + static_cast<std::ptrdiff_t>(removed));
    book.positions.erase(found);
    for (auto& [name, position] : book.positions)
        if (position > removed) --position;
    return true;
}

void LoadAddressBook() {
    for (const std::wstring& name : EntryKeys()) {
        const std::wstring path = kSettings + name + L"\\";
        clsAddressBookEntry entry;
        entry.PCName(AsText(Registry().GetValue(path + L"PCName", REG_TYPE_SZ)));
        entry.IP(AsText(Registry().GetValue(path + L"IP", REG_TYPE_SZ)));
        entry.Comment(AsText(Registry().GetValue(path + L"Comment", REG_TYPE_SZ)));
        AddAddressBookEntry(entry);
    }
}

void SaveAddressBook() {
    RegistryTransaction image;
    for (const std::wstring& name : EntryKeys()) Registry().DeleteKey(kSettings + name);
    std::size_t number = 0;
    for (const clsAddressBookEntry& entry : AddressBook()) {
        const std::wstring path = kSettings + kEntryPrefix + std::to_wstring(number++) + L"\\";
        Registry().SetValue(path + L"PCName", REG_TYPE_SZ, entry.PCName());
        Registry().SetValue(path + L"IP", REG_TYPE_SZ, entry.IP());
        Registry().SetValue(path + L"Comment", REG_TYPE_SZ, entry.Comment());
    }
    image.Commit();
}
