#include <windows.h>

#include <gtest/gtest.h>

#include "base/Text.h"
#include "tests/app/MenuOnScreen.h"

namespace {

// What the window in which Windows shows a menu answers with the menu that it shows.
constexpr UINT kGetMenu = 0x01E1;

class WindowsMenuOnScreen : public MenuOnScreen {
  public:
    WindowsMenuOnScreen(HWND window, HMENU menu) : window_(window), menu_(menu) {}

    bool Has(const std::wstring& caption) const override { return Position(caption) >= 0; }
    bool IsEnabled(const std::wstring& caption) const override {
        return Has(caption) && (State(caption) & (MF_GRAYED | MF_DISABLED)) == 0;
    }
    bool IsChecked(const std::wstring& caption) const override {
        return Has(caption) && (State(caption) & MF_CHECKED) != 0;
    }
    bool OpensSubmenu(const std::wstring& caption) const override {
        return Has(caption) && GetSubMenu(menu_, Position(caption)) != nullptr;
    }
    wxPoint Place() const override {
        RECT place{};
        GetWindowRect(window_, &place);
        return {place.left, place.top};
    }
    // Here nothing is chosen before the first key.
    bool IsReadyForKeys(const std::wstring& caption) const override {
        return Has(caption) && (State(caption) & MF_HILITE) == 0;
    }
    int PictureHeight() const override {
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_FTYPE;
        RECT place{};
        // A separator cannot be chosen; that it is no line is its own doing.
        if (!GetMenuItemInfoW(menu_, 0, TRUE, &info) || info.fType != (MFT_OWNERDRAW | MFT_SEPARATOR) ||
            !GetMenuItemRect(nullptr, menu_, 0, &place))
            return 0;
        return static_cast<int>(place.bottom - place.top);
    }
    // Nothing else chooses an item by its place.
    void Choose(const std::wstring& caption) override { Click(caption); }
    bool SubmenuIsOpen(const std::wstring&) const override {
        const HWND next = FindWindowExW(nullptr, window_, L"#32768", nullptr);
        const HWND first = FindWindowExW(nullptr, nullptr, L"#32768", nullptr);
        return (next && IsWindowVisible(next)) || (first != window_ && IsWindowVisible(first));
    }
    void Click(const std::wstring& caption) override {
        RECT place{};
        ASSERT_TRUE(Has(caption)) << ToUtf8(caption);
        ASSERT_TRUE(GetMenuItemRect(nullptr, menu_, static_cast<UINT>(Position(caption)), &place));
        SetCursorPos((place.left + place.right) / 2, (place.top + place.bottom) / 2);
        INPUT click[2]{};
        click[0].mi.dwFlags = MOUSEEVENTF_LEFTDOWN;
        click[1].mi.dwFlags = MOUSEEVENTF_LEFTUP;
        SendInput(2, click, sizeof(INPUT));
    }
    void Close() override { EndMenu(); }

  private:
    int Position(const std::wstring& caption) const {
        for (int i = 0; i < GetMenuItemCount(menu_); ++i) {
            wchar_t text[256] = L"";
            GetMenuStringW(menu_, static_cast<UINT>(i), text, 256, MF_BYPOSITION);
            if (text == caption) return i;
        }
        return -1;
    }
    UINT State(const std::wstring& caption) const {
        return GetMenuState(menu_, static_cast<UINT>(Position(caption)), MF_BYPOSITION);
    }

    HWND window_;
    HMENU menu_;
};

}  // namespace

std::unique_ptr<MenuOnScreen> MenuOnScreen::Find() {
    const HWND window = FindWindowW(L"#32768", nullptr);
    if (!window || !IsWindowVisible(window)) return nullptr;
    const auto menu = reinterpret_cast<HMENU>(SendMessageW(window, kGetMenu, 0, 0));
    if (!menu) return nullptr;
    return std::make_unique<WindowsMenuOnScreen>(window, menu);
}
