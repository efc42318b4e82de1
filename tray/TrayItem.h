#pragma once
// The platform's side of one icon in the notification area: add, modify and delete, and the mouse messages
// that come back. One implementation per platform.

#include <wx/bmpbndl.h>

#include <functional>
#include <memory>
#include <string>

#include "tray/TrayMenu.h"

enum class TrayMessage {
    MouseMove,
    LeftDoubleClick,
    RightDoubleClick,
    LeftDown,
    RightDown,
    LeftUp,
    RightUp,
    ContextMenu,  // asked for otherwise than with the right button
};

class TrayItem {
  public:
    virtual ~TrayItem() = default;  // deletes the icon
    // Replaces picture and tip (at most 63 characters) of the icon.
    virtual void Modify(const wxBitmapBundle& picture, const std::wstring& toolTip) = 0;

    // Adds an icon. `report` gets every mouse message until the item is destroyed; it may destroy the item.
    // `menu` is for areas that show the menus of icons themselves; without Describe there is none.
    // The icon appears when events run next, so that adding many at once costs little.
    static std::unique_ptr<TrayItem> Add(const wxBitmapBundle& picture, const std::wstring& toolTip,
                                         std::function<void(TrayMessage)> report, const TrayMenu& menu);

    // Some menu may be described otherwise from now on. Cheap: it is looked at later, and only where areas
    // show menus themselves.
    static void MenusChanged();
};
