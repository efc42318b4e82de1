#pragma once
// The popup menu that is open on the screen, as the platform shows it.

#include <wx/gdicmn.h>

#include <memory>
#include <string>

class MenuOnScreen {
  public:
    virtual ~MenuOnScreen() = default;

    // The menu that is open; null when there is none.
    static std::unique_ptr<MenuOnScreen> Find();

    // Of the item with this caption. Has: is there at all.
    virtual bool Has(const std::wstring& caption) const = 0;
    virtual bool IsEnabled(const std::wstring& caption) const = 0;
    virtual bool IsChecked(const std::wstring& caption) const = 0;
    virtual bool OpensSubmenu(const std::wstring& caption) const = 0;

    // Where it is on the screen, and whether keys act on this item at once or, where menus begin so, on none
    // yet.
    virtual wxPoint Place() const = 0;
    virtual bool IsReadyForKeys(const std::wstring& caption) const = 0;

    // Height of the picture that the first item is, in pixels; 0 when it is none or can be chosen.
    virtual int PictureHeight() const = 0;

    // A short click of the mouse on the item, as soon as the pointer is there, and whether the submenu that
    // an item opens is on the screen.
    virtual void Click(const std::wstring& caption) = 0;
    virtual bool SubmenuIsOpen(const std::wstring& caption) const = 0;

    // Chooses the item, or closes the menu without choosing.
    virtual void Choose(const std::wstring& caption) = 0;
    virtual void Close() = 0;
};
