#include "addressbook/NameLookup.h"

#include <optional>

#include "dialogs/basWait.h"

std::wstring ResolveHostAddress(const std::wstring& name, const std::function<bool()>& abandoned) {
    std::optional<std::wstring> found;
    const NameLookup lookup(name, [&](const std::wstring& address) {
        found = address;
        WakeWaits();
    });
    WaitUntil([&] { return found || (abandoned && abandoned()); });
    return found.value_or(L"");
}
