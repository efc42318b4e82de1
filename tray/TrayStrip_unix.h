#pragma once
// A small window in the bottom-right corner of the primary screen, free of panels, that shows the icons where
// no notification area does. It exists only while it has icons. Changes are gathered and shown when events
// run next. All lengths are GTK's units.

#include <gtk/gtk.h>
#include <wx/dnd.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "tray/TrayIcon_unix.h"
#include "tray/TrayStripLayout.h"

class TrayStrip {
  public:
    // The only one; it lives until the process ends.
    static TrayStrip& Get();

    // The icon stays the caller's and is removed before it dies.
    void Show(const TrayIcon& icon);
    // Picture or tip of an icon have changed; nothing happens when the strip does not show it.
    void Changed(const TrayIcon& icon);
    void Remove(const TrayIcon& icon);
    // Where an icon of the strip stands on the desktop; nothing for one that it does not show.
    std::optional<wxRect> PlaceOf(const TrayIcon& icon) const;
    // A rectangle of the desktop that the strip should not cover, if there is one; asked whenever the strip
    // is placed.
    std::function<std::optional<GdkRectangle>()> KeepFree;
    // What takes in what is dropped on the strip's window, if set; asked whenever there is a new one.
    std::function<std::unique_ptr<wxDropTarget>()> MakeDropTarget;
    // To be called when that rectangle has changed.
    void PlaceAgain();

  private:
    TrayStrip() = default;
    void UpdateLater();
    void Update();
    void CreateWindow();
    void ConnectEvents();
    void DestroyWindow();
    void Place();
    const TrayIcon* IconAt(double x, double y) const;
    void Hover(const TrayIcon* icon);
    void Redraw(unsigned long number);

    void Draw(cairo_t* context) const;
    void DrawIcon(cairo_t* context, const TrayIcon& icon, const GdkRectangle& cell) const;
    void OnButton(const GdkEventButton& event);
    void OnMotion(const GdkEventMotion& event);
    bool OnQueryTip(int x, int y, GtkTooltip* tip) const;

    std::map<unsigned long, const TrayIcon*> icons_;
    std::vector<unsigned long> cells_;  // numbers of the icons as they were last laid out, ascending
    StripLayout layout_;
    GtkWidget* window_ = nullptr;
    std::unique_ptr<wxDropTarget> dropTarget_;
    guint update_ = 0;           // GLib source of the update to come, 0 for none
    unsigned long hovered_ = 0;  // numbers of icons, 0 for none
    unsigned long pressed_ = 0;
};
