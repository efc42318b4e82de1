#include "addressbook/NameLookup.h"

#include <optional>

#include "dialogs/Wait.h"

namespace {

std::wstring Trimmed(const std::wstring& name) {
    const std::size_t first = name.find_first_not_of(L' ');
    return first == name.npos ? L"" : name.substr(first, name.find_last_not_of(L' ') - first + 1);
}

}  // namespace

NameLookup::NameLookup(const std::wstring& name, Answer answer)
    : running_(Start(Trimmed(name), std::move(answer))) {}

std::wstring ResolveHostAddress(const std::wstring& name, const std::function<bool()>& abandoned) {
    std::optional<std::wstring> found;
    const NameLookup lookup(name, [&](const std::vector<std::wstring>& addresses) {
        found = addresses.empty() ? L"" : addresses.front();
        WakeWaits();
    });
    WaitUntil([&] { return found || (abandoned && abandoned()); });
    return found.value_or(L"");
}
