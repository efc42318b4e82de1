#pragma once
// Where icons can be seen on the display: inside a tray host, of which one can be started, or in the strip.
// Brings Xlib's macros along, so it is included last.

#include <gtest/gtest.h>
#include <wx/frame.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "res/Resources.h"
#include "tests/support/Events.h"
#include "tests/support/Shell_unix.h"
#include "tests/support/Toplevels_unix.h"
#include "tray/Notification.h"
#include "tray/TrayStripLayout.h"

// clang-format off
#include <gdk/gdkx.h>
// clang-format on

inline Display* XDisplay() { return gdk_x11_display_get_xdisplay(gdk_display_get_default()); }

inline bool HostExists() {
    return XGetSelectionOwner(XDisplay(), XInternAtom(XDisplay(), "_NET_SYSTEM_TRAY_S0", False)) != None;
}

inline GtkWindow* Strip() {
    for (GtkWindow* window : Toplevels())
        if (gtk_window_get_type_hint(window) == GDK_WINDOW_TYPE_HINT_DOCK &&
            gtk_widget_get_mapped(GTK_WIDGET(window)))
            return window;
    return nullptr;
}

// Icons inside a host, in the order in which they were made.
inline std::vector<GtkWindow*> Embedded() {
    std::vector<GtkWindow*> icons;
    for (GtkWindow* window : Toplevels()) {
        if (std::strcmp(G_OBJECT_TYPE_NAME(window), "GtkTrayIcon") != 0) continue;
        gboolean embedded = FALSE;
        g_object_get(window, "embedded", &embedded, nullptr);
        if (embedded) icons.push_back(window);
    }
    return icons;
}

inline wxRect ScreenRect(GtkWindow* window) {
    GdkWindow* native = gtk_widget_get_window(GTK_WIDGET(window));
    wxRect rect;
    gdk_window_get_origin(native, &rect.x, &rect.y);
    rect.SetSize(wxSize(gdk_window_get_width(native), gdk_window_get_height(native)));
    return rect;
}

// The top-level window of the host around an icon.
inline Window HostOf(GtkWindow* icon) {
    Window root = None, window = None;
    Window parent = gdk_x11_window_get_xid(gtk_widget_get_window(GTK_WIDGET(icon)));
    while (parent != root) {
        window = parent;
        Window* children = nullptr;
        unsigned count = 0;
        if (!XQueryTree(XDisplay(), window, &root, &parent, &children, &count)) return None;
        XFree(children);
    }
    return window;
}

// A host takes so many icons and has made room for all of them: they stand inside its window, apart.
inline bool HostHolds(std::size_t count) {
    const std::vector<GtkWindow*> icons = Embedded();
    if (icons.size() != count || !count) return icons.size() == count;
    XWindowAttributes host;
    if (!XGetWindowAttributes(XDisplay(), HostOf(icons.front()), &host)) return false;
    const wxRect room(host.x, host.y, host.width, host.height);
    for (auto icon = icons.begin(); icon != icons.end(); ++icon) {
        const wxRect rect = ScreenRect(*icon);
        const auto meets = [&](GtkWindow* other) { return ScreenRect(other).Intersects(rect); };
        if (!room.Contains(rect) || std::any_of(icons.begin(), icon, meets)) return false;
    }
    return true;
}

inline wxPoint Middle(const wxRect& rect) { return {rect.x + rect.width / 2, rect.y + rect.height / 2}; }

// The strip can be clicked: it is on the screen and has come to its place.
inline bool StripInCorner() {
    GtkWindow* strip = Strip();
    if (!strip) return false;
    XWindowAttributes attributes;
    const Window window = gdk_x11_window_get_xid(gtk_widget_get_window(GTK_WIDGET(strip)));
    if (!XGetWindowAttributes(XDisplay(), window, &attributes)) return false;
    if (attributes.map_state != IsViewable) return false;
    GdkRectangle room;
    gdk_monitor_get_workarea(gdk_display_get_monitor(gdk_display_get_default(), 0), &room);
    return ScreenRect(strip).GetBottomRight() == wxPoint(room.x + room.width - 1, room.y + room.height - 1);
}

// Middle of an icon in the strip's lowest row, counted from the corner.
inline wxPoint InStrip(int index) {
    const wxRect strip = ScreenRect(Strip());
    return {strip.GetRight() - kStripBorder - index * kStripCell - kStripCell / 2,
            strip.GetBottom() - kStripBorder - kStripCell / 2};
}

inline int IconsInStrip() {
    return Strip() ? (ScreenRect(Strip()).width - 2 * kStripBorder) / kStripCell : 0;
}

class TrayProcess {
  public:
    // edge: of the screen; trayer covers it without reserving it.
    explicit TrayProcess(const std::string& edge = "top")
        : trayer_(std::in_place, "trayer --align right --widthtype request --height 26 --edge " + edge) {}
    void End() { trayer_.reset(); }

  private:
    std::optional<Background> trayer_;
};

// Icons that write down what they report, on a display where nobody else shows them.
class TrayFixture : public testing::Test {
  protected:
    void SetUp() override {
        // What is meant as a double click is one, also where the machine has much else to do.
        g_object_set(gtk_settings_get_default(), "gtk-double-click-time", 60'000, nullptr);
        frame_.SetSize(0, 0, 60, 60);
        frame_.Show();
        RunEvents();
        if (HostExists()) GTEST_SKIP() << "this display has a notification area that is not the test's";
    }

    void TearDown() override {
        gtk_settings_reset_property(gtk_settings_get_default(), "gtk-double-click-time");
        icons_.clear();
        EXPECT_TRUE(RunUntil([] { return !Strip() && Embedded().empty(); }));
    }

    Notification& AddIcon(const std::wstring& tip, const TrayMenu& menu = {}) {
        icons_.push_back(std::make_unique<Notification>());
        Notification& icon = *icons_.back();
        icon.Menu = menu;
        icon.SetIconFile(ResourcePicture(kFirstNoteIcon + static_cast<int>(icons_.size() - 1) % 4));
        icon.IconToolTip(tip);
        const auto note = [this, tip](const wchar_t* event) {
            return [this, tip, event](int button) { log_ += tip + event + std::to_wstring(button) + L' '; };
        };
        icon.Events.MouseDown = note(L"down");
        icon.Events.MouseUp = note(L"up");
        icon.Events.DblClick = note(L"double");
        icon.Events.ContextMenu = [this, tip] { log_ += tip + L"menu "; };
        icon.ShowIcon();
        return icon;
    }

    wxFrame frame_{nullptr, wxID_ANY, L"Kivora"};  // menus and the simulated pointer want a window
    std::vector<std::unique_ptr<Notification>> icons_;
    std::wstring log_;
};
