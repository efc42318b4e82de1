#include <windows.h>

#include "tests/app/MenuOnScreen.h"

namespace {

// What the window in which Windows shows a menu answers with the menu that it shows.
constexpr UINT kGetMenu = 0x01E1;

MenuOnScreen::Item Described(HMENU menu, int position) {
    const auto index = static_cast<UINT>(position);
    wchar_t text[256] = L"";
    GetMenuStringW(menu, index, text, 256, MF_BYPOSITION);
    const UINT state = GetMenuState(menu, index, MF_BYPOSITION);
    const auto click = [menu, index] {
        RECT place{};
        ASSERT_TRUE(GetMenuItemRect(nullptr, menu, index, &place));
        SetCursorPos((place.left + place.right) / 2, (place.top + place.bottom) / 2);
        INPUT presses[2]{};
        presses[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
        presses[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
        SendInput(2, presses, sizeof(INPUT));
    };
    return {.caption = text,
            .enabled = (state & (MF_GRAYED | MF_DISABLED)) == 0,
            .checked = (state & MF_CHECKED) != 0,
            .opensSubmenu = GetSubMenu(menu, position) != nullptr,
            .isReadyForKeys = (state & MF_HILITE) == 0,  // nothing is chosen before the first key
            .choose = click,                             // nothing else chooses an item by its place
            .click = click};
}

int PictureHeight(HMENU menu) {
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_FTYPE;
    RECT place{};
    // A separator cannot be chosen; that it is no line is its own doing.
    if (!GetMenuItemInfoW(menu, 0, TRUE, &info) || info.fType != (MFT_OWNERDRAW | MFT_SEPARATOR) ||
        !GetMenuItemRect(nullptr, menu, 0, &place))
        return 0;
    return static_cast<int>(place.bottom - place.top);
}

bool IsSubmenu(HMENU menu, HMENU of) {
    for (int i = 0; i < GetMenuItemCount(of); ++i)
        if (GetSubMenu(of, i) == menu) return true;
    return false;
}

}  // namespace

std::optional<MenuOnScreen> MenuOnScreen::Find() {
    HWND window = nullptr, each = nullptr;
    HMENU menu = nullptr;
    while ((each = FindWindowExW(nullptr, each, L"#32768", nullptr))) {
        const auto shown = reinterpret_cast<HMENU>(SendMessageW(each, kGetMenu, 0, 0));
        if (!IsWindowVisible(each) || !shown || (menu && !IsSubmenu(shown, menu))) continue;
        window = each;
        menu = shown;
    }
    if (!menu) return std::nullopt;
    RECT place{};
    GetWindowRect(window, &place);
    MenuOnScreen found{
        .place = {place.left, place.top}, .pictureHeight = ::PictureHeight(menu), .close = [] { EndMenu(); }};
    for (int i = 0; i < GetMenuItemCount(menu); ++i) found.items.push_back(Described(menu, i));
    return found;
}
