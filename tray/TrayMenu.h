#pragma once
// The menu of an icon as plain data, for notification areas that show the menus of icons themselves. Where
// the program opens the menu, the icon's events ask for it instead.

#include <functional>
#include <string>
#include <vector>

struct TrayMenuEntry {
    enum Kind { Command, Check, Separator, Submenu };
    int id = 0;  // above 0; the same for the same item each time that the menu is described
    Kind kind = Command;
    std::wstring caption;
    bool enabled = true;
    bool checked = false;
    std::vector<TrayMenuEntry> submenu = {};
    bool operator==(const TrayMenuEntry&) const = default;
};

struct TrayMenu {
    // The menu as it is now; asked whenever it is about to be shown.
    std::function<std::vector<TrayMenuEntry>()> Describe;
    // Does what choosing the entry does; may destroy the icon.
    std::function<void(int id)> Run;
};
