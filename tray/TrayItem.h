#pragma once
// One icon in the notification area of the platform: add, modify and delete, and the mouse messages that come
// back. TrayItem_msw.cpp does it with Shell_NotifyIconA; TrayItem_unix.cpp with D-Bus, X11 or a window of the
// program. Nothing here reports a failure: an icon that one of them refuses stands in the next one, and
// Windows, while it is busy, is asked again. Everything is called, and calls back, on the thread of the
// windows.

#include <wx/bmpbndl.h>
#include <wx/dnd.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "tray/TrayMenu.h"
#include "tray/TrayMessage.h"

class TrayItem {
  public:
    virtual ~TrayItem() = default;  // deletes the icon
    // Replaces picture and tip (at most 63 characters) of the icon.
    virtual void Modify(const wxBitmapBundle& picture, const std::wstring& toolTip) = 0;

    // Where the icon stands on the desktop; nothing while it stands nowhere, and where the area does not
    // tell.
    virtual std::optional<wxRect> Place() const = 0;

    // Adds an icon, with a tip of at most 63 characters. `report` gets every mouse message until the item is
    // destroyed; it may destroy the item. `menu` is for areas that show the menus of icons themselves;
    // without Describe there is none. The icon appears when events run next, so that adding many at once
    // costs little.
    static std::unique_ptr<TrayItem> Add(const wxBitmapBundle& picture, const std::wstring& toolTip,
                                         std::function<void(TrayMessage)> report, const TrayMenu& menu);

    // To be called when the menu of any icon may have changed. Cheap: the menus are described anew when
    // events run next, and only for areas that show menus themselves.
    static void MenusChanged();

    // What takes in what is dropped on a window of the program that shows icons. Areas of the platform let
    // nothing be dropped on icons.
    static void TakeDrops(std::function<std::unique_ptr<wxDropTarget>()> makeTarget);

    // Makes the icons of the user's other copies come again that Windows has lost. Linux loses none.
    static void RemindOtherCopies();
};
