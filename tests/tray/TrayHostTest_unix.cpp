// Icons with and without a notification area, with a real pointer. They need a display whose notification
// area they may start and stop.
#include <wx/menu.h>
#include <wx/uiaction.h>

#include "tray/Notification.h"

// Last, because Xlib's macros would spoil the others.
#include "tests/tray/TrayDisplay_unix.h"

namespace {

using std::chrono::milliseconds;

class TrayHost : public TrayFixture {
  protected:
    // What the icons report of a gesture at that place.
    std::wstring Reported(wxPoint place, const std::function<void(wxUIActionSimulator&)>& gesture) {
        log_.clear();
        wxUIActionSimulator pointer;
        pointer.MouseMove(place);
        gesture(pointer);
        // A click elsewhere arrives after all of that, and what follows is no double click with it.
        bool clicked = false;
        const auto onClick = [&clicked](wxMouseEvent&) { clicked = true; };
        frame_.Bind(wxEVT_LEFT_UP, onClick);
        pointer.MouseMove(frame_.ClientToScreen(wxPoint(20, 20)));
        pointer.MouseClick();
        EXPECT_TRUE(RunUntil([&clicked] { return clicked; }));
        frame_.Unbind(wxEVT_LEFT_UP, onClick);
        RunPosted();
        return log_;
    }

    void ExpectGestures(const std::function<wxPoint()>& place, const std::wstring& name) {
        EXPECT_EQ(Reported(place(), [](wxUIActionSimulator& p) { p.MouseClick(); }),
                  name + L"down1 " + name + L"up1 ");
        EXPECT_EQ(Reported(place(), [](wxUIActionSimulator& p) { p.MouseDblClick(); }),
                  name + L"down1 " + name + L"up1 " + name + L"double1 " + name + L"up1 ");
        // One right click asks for the menu once: by the release, not by the press as well.
        EXPECT_EQ(Reported(place(), [](wxUIActionSimulator& p) { p.MouseClick(wxMOUSE_BTN_RIGHT); }),
                  name + L"down2 " + name + L"up2 ");
    }

    // Opens a menu when the right button goes up and looks whether it stays.
    void ExpectMenuStays(Notification& icon, wxPoint place) {
        bool open = false, stayed = false;
        int opened = 0;
        icon.Events.MouseUp = [&](int button) {
            if (button != 2) return;
            ++opened;
            open = true;
            wxMenu menu;
            menu.Append(wxID_NEW, L"Neue Notiz...");
            frame_.PopupMenu(&menu);
            open = false;
        };
        // It takes a key after the click that has opened it.
        Repeated::Every(milliseconds(10), [&] {
            if (!open) return opened > 0;
            GtkWidget* grabbing = gtk_grab_get_current();
            if (!grabbing || !GTK_IS_MENU_SHELL(grabbing)) return false;
            stayed = gtk_menu_shell_get_selected_item(GTK_MENU_SHELL(grabbing)) != nullptr;
            wxUIActionSimulator().Char(stayed ? WXK_ESCAPE : WXK_DOWN);
            return stayed;
        });
        wxUIActionSimulator pointer;
        pointer.MouseMove(place);
        pointer.MouseClick(wxMOUSE_BTN_RIGHT);
        EXPECT_TRUE(RunUntil([&] { return opened > 0 && !open; }));
        EXPECT_TRUE(stayed);
        EXPECT_EQ(opened, 1);
    }
};

}  // namespace

TEST_F(TrayHost, WithoutAHostTheStripShowsTheIcons) {
    AddIcon(L"A");
    Notification& second = AddIcon(L"B");
    ASSERT_TRUE(RunUntil(StripInCorner));
    EXPECT_EQ(IconsInStrip(), 2);
    EXPECT_FALSE(gtk_window_has_toplevel_focus(Strip()));

    ExpectGestures([] { return InStrip(0); }, L"A");
    ExpectGestures([] { return InStrip(1); }, L"B");

    // Away with the first, and the second moves into the corner.
    icons_.erase(icons_.begin());
    EXPECT_TRUE(RunUntil([] { return IconsInStrip() == 1 && StripInCorner(); }));
    EXPECT_EQ(Reported(InStrip(0), [](wxUIActionSimulator& p) { p.MouseClick(); }), L"Bdown1 Bup1 ");
    ExpectMenuStays(second, InStrip(0));
    second.Enabled(false);
    EXPECT_TRUE(RunUntil([] { return !Strip(); }));
    second.ShowIcon();
    ASSERT_TRUE(RunUntil(StripInCorner));
    EXPECT_EQ(Reported(InStrip(0), [](wxUIActionSimulator& p) { p.MouseDblClick(); }), L"");
}

// As a double click does that brings a minimized note back. The icon that moves below the pointer meanwhile
// does not get the release.
TEST_F(TrayHost, AnIconMayDieOfItsOwnDoubleClick) {
    AddIcon(L"A");
    AddIcon(L"B");
    icons_.front()->Events.DblClick = [this](int) { icons_.erase(icons_.begin()); };
    ASSERT_TRUE(RunUntil(StripInCorner));
    EXPECT_EQ(Reported(InStrip(0),
                       [](wxUIActionSimulator& p) {
                           p.MouseClick();
                           p.MouseDown();
                           EXPECT_TRUE(RunUntil([] { return IconsInStrip() == 1; }));
                           p.MouseUp();
                       }),
              L"Adown1 Aup1 ");
    EXPECT_EQ(icons_.size(), 1u);

    TrayProcess tray;
    ASSERT_TRUE(RunUntil([] { return HostHolds(1); }));
    icons_.front()->Events.DblClick = [this](int) { icons_.clear(); };
    EXPECT_EQ(
        Reported(Middle(ScreenRect(Embedded().front())), [](wxUIActionSimulator& p) { p.MouseDblClick(); }),
        L"Bdown1 Bup1 ");
    EXPECT_TRUE(icons_.empty());
    EXPECT_TRUE(Embedded().empty());
}

TEST_F(TrayHost, IconsMoveToAHostAndComeBack) {
    Notification& first = AddIcon(L"A");
    AddIcon(L"B");
    ASSERT_TRUE(RunUntil(StripInCorner));
    TrayProcess tray;
    ASSERT_TRUE(RunUntil([] { return HostHolds(2) && !Strip(); }));

    // The order is the host's business.
    const auto place = [] { return Middle(ScreenRect(Embedded().front())); };
    const std::wstring name = Reported(place(), [](wxUIActionSimulator& p) { p.MouseClick(); }).substr(0, 1);
    ExpectGestures(place, name);
    Notification& icon = name == L"A" ? first : *icons_.back();
    const auto picture = [] {
        const wxRect rect = ScreenRect(Embedded().front());
        GdkPixbuf* const pixels = gdk_pixbuf_get_from_window(gdk_get_default_root_window(), rect.x, rect.y,
                                                             rect.width, rect.height);
        const std::string bytes(reinterpret_cast<const char*>(gdk_pixbuf_read_pixels(pixels)),
                                gdk_pixbuf_get_byte_length(pixels));
        g_object_unref(pixels);
        return bytes;
    };
    const std::string before = picture();
    icon.SetIconFile(ResourcePicture(kLastNoteIcon));
    EXPECT_TRUE(RunUntil([&] { return picture() != before; }));
    ExpectMenuStays(icon, place());

    tray.End();
    ASSERT_TRUE(RunUntil([] { return IconsInStrip() == 2 && Embedded().empty(); }));
    AddIcon(L"C");
    EXPECT_TRUE(RunUntil([] { return IconsInStrip() == 3; }));

    TrayProcess again("top --height 48");
    EXPECT_TRUE(RunUntil([] { return Embedded().size() == 3 && !Strip(); }));
    EXPECT_TRUE(RunUntil([] {
        cairo_surface_t* picture = nullptr;
        g_object_get(gtk_bin_get_child(GTK_BIN(Embedded().front())), "surface", &picture, nullptr);
        const int height = picture ? cairo_image_surface_get_height(picture) : 0;
        cairo_surface_destroy(picture);
        return height > 40;
    }));
    // Shown while a host exists, an icon does not pass through the strip.
    AddIcon(L"D");
    EXPECT_FALSE(RunUntil([] { return Strip() || Embedded().size() == 4; }) && Strip());
    EXPECT_EQ(Embedded().size(), 4u);
}

TEST_F(TrayHost, AHostThatTakesNothingLeavesTheIconsToTheStrip) {
    GtkWidget* const deaf = gtk_invisible_new();
    gtk_selection_owner_set(deaf, gdk_atom_intern("_NET_SYSTEM_TRAY_S0", FALSE), GDK_CURRENT_TIME);
    RunPosted();
    AddIcon(L"A");
    const auto offered = [] {
        return std::ranges::any_of(Toplevels(), [](GtkWindow* window) {
            return std::strcmp(G_OBJECT_TYPE_NAME(window), "GtkTrayIcon") == 0;
        });
    };
    ASSERT_TRUE(RunUntil([&] { return offered() || Strip(); }));
    EXPECT_FALSE(Strip());
    ASSERT_TRUE(RunUntil(StripInCorner));
    EXPECT_EQ(Reported(InStrip(0), [](wxUIActionSimulator& p) { p.MouseClick(); }), L"Adown1 Aup1 ");
    gtk_widget_destroy(deaf);
}

TEST_F(TrayHost, WhatAHostHasNoRoomForStandsInTheStripBesideIt) {
    for (const char* edge : {"bottom", "right", "left --SetDockType true --SetPartialStrut true"}) {
        SCOPED_TRACE(edge);
        TrayProcess tray(edge);
        ASSERT_TRUE(RunUntil(HostExists));
        for (int i = 0; i < 34; ++i) AddIcon(L"N" + std::to_wstring(i));
        ASSERT_TRUE(RunUntil([] { return HostHolds(32) && IconsInStrip() == 2; }));
        const auto covers = [] {
            for (GtkWindow* icon : Embedded())
                if (ScreenRect(icon).Intersects(ScreenRect(Strip()))) return true;
            return false;
        };
        EXPECT_TRUE(RunUntil([&] { return !covers(); }));
        // What a panel at the left takes of the screen is nothing of the corner.
        EXPECT_TRUE(edge[0] != 'l' || RunUntil(StripInCorner));
        // A host that moves later, past its window manager, drives it away.
        const wxRect strip = ScreenRect(Strip());
        XMoveWindow(XDisplay(), HostOf(Embedded().front()), strip.x, strip.y);
        EXPECT_TRUE(RunUntil([&] { return !covers(); }));
        // Two go from the host, and the two from the strip take their places.
        icons_.erase(icons_.begin() + 5, icons_.begin() + 7);
        EXPECT_TRUE(RunUntil([] { return Embedded().size() == 32 && !Strip(); }));
        icons_.clear();
        ASSERT_TRUE(RunUntil([] { return !Strip() && Embedded().empty(); }));
    }
}
