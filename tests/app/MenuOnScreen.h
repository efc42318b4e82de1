#pragma once
// The popup menu that is open on the screen, as the platform shows it.

#include <gtest/gtest.h>
#include <wx/gdicmn.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <string>
#include <vector>

struct MenuOnScreen {
    struct Item {
        std::wstring caption = {};
        bool enabled = false, checked = false, opensSubmenu = false;
        bool isReadyForKeys = false;  // they act on it at once or, where menus begin so, on none yet
        std::function<void()> choose = [] { ADD_FAILURE() << "no such item"; };
        std::function<void()> click = choose;  // a short one of the mouse, as soon as the pointer is there
    };

    // The menu that is open, of several the submenu; nothing when there is none.
    static std::optional<MenuOnScreen> Find();

    bool Has(const std::wstring& caption) const { return !(*this)[caption].caption.empty(); }
    // An empty item when there is none with this caption.
    Item operator[](const std::wstring& caption) const {
        const auto found = std::ranges::find(items, caption, &Item::caption);
        return found == items.end() ? Item() : *found;
    }

    std::vector<Item> items = {};
    wxPoint place = {};
    int pictureHeight = 0;  // in pixels, of the picture that is the first item and cannot be chosen
    std::function<void()> close = {};  // without choosing
};
