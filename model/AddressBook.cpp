#include "model/AddressBook.h"

#include <cstddef>
#include <unordered_map>

#include "base/CaseFold.h"

namespace {

struct Book {
    std::vector<clsAddressBookEntry> entries;
    std::unordered_map<std::wstring, std::size_t> positions;  // by the PCName in capitals
};

Book& TheBook() {
    static Book book;
    return book;
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
