#pragma once
// One icon in the notification area: its picture, its tip, and the mouse on it as events. The program has one
// for itself and every minimized note has one of its own. Where no notification area exists, a small strip
// window of the program stands in for it; the owner of an icon does not notice the difference.

#include <wx/bmpbndl.h>
#include <wx/dnd.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "tray/TrayMenu.h"

// A picture as the icon control knows it: what it is decides which setter takes it.
struct Picture {
    enum Type { Empty = 0, Bitmap = 1, Icon = 3 };
    Type type = Empty;
    wxBitmapBundle bitmap;
};

// The picture of a resource number: an icon for the numbers that name icons, a bitmap for the others, nothing
// for a number that names none.
Picture ResourcePicture(int id);

// What the control reports; a handler may destroy the control.
// Button is 1 for the left and 2 for the right mouse button.
struct NotificationEvents {
    std::function<void()> MouseMove;
    std::function<void(int Button)> DblClick;
    std::function<void(int Button)> MouseDown;
    std::function<void(int Button)> MouseUp;
    std::function<void()> ContextMenu;
};

class TrayItem;

class Notification {
  public:
    Notification();
    ~Notification();  // takes the icon away
    Notification(const Notification&) = delete;
    Notification& operator=(const Notification&) = delete;

    const Picture& IconFile() const { return icon_; }
    // Takes any picture and refreshes a shown icon.
    void LetIconFile(const Picture& picture);
    // Takes the picture only when it is an icon, else keeps the old one; refreshes a shown icon.
    void SetIconFile(const Picture& picture);

    const std::wstring& IconToolTip() const { return toolTip_; }
    // Keeps the first 63 characters and refreshes a shown icon; does not show a hidden one.
    void IconToolTip(const std::wstring& text);

    // Adds the icon to the notification area, or renews it there.
    void ShowIcon();
    void HideIcon();
    bool Shown() const { return item_ != nullptr; }
    // Where it stands on the desktop; nothing while it stands nowhere, and where the area does not tell.
    std::optional<wxRect> Place() const;

    bool Enabled() const { return enabled_; }
    // True shows the icon, false hides it. An icon that is shown while this is false reports nothing.
    void Enabled(bool enable);

    NotificationEvents Events;

    // The menu of the icon, for areas that show it themselves instead of asking for it by the events. To be
    // set before the icon is shown for the first time.
    TrayMenu Menu;
    // To be called when the menu of any icon may have changed; cheap.
    static void MenusChanged();

    // What takes in what is dropped where the program's own window shows icons: one target for each such
    // window, made when the window is.
    static void TakeDrops(std::function<std::unique_ptr<wxDropTarget>()> makeTarget);

  private:
    void Refresh();
    TrayMenu GuardedMenu() const;

    Picture icon_;
    std::wstring toolTip_;
    bool enabled_ = true;
    std::unique_ptr<TrayItem> item_;
};
