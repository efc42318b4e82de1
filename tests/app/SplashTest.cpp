// The picture at the start, with a user in a hurry.
#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

#include <chrono>
#include <functional>

#include "app/frmSplash.h"
#include "tests/support/Events.h"
#include "tests/support/Toplevels_unix.h"

// Last, because of its macros.
#include <gdk/gdkx.h>

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

GtkWindow* OpenSplash() {
    for (GtkWindow* window : Toplevels())
        if (gtk_widget_get_mapped(GTK_WIDGET(window)) &&
            gtk_window_get_type_hint(window) == GDK_WINDOW_TYPE_HINT_SPLASHSCREEN)
            return window;
    return nullptr;
}

// GTK calls a window mapped that the window manager has not put on the screen yet.
bool IsOnScreen(GtkWindow* window) {
    GdkWindow* const drawn = gtk_widget_get_window(GTK_WIDGET(window));
    XWindowAttributes attributes = {};
    return XGetWindowAttributes(GDK_WINDOW_XDISPLAY(drawn), GDK_WINDOW_XID(drawn), &attributes) &&
           attributes.map_state == IsViewable;
}

// What is done to the splash as soon as it is on the screen.
struct Deed {
    std::function<void(GtkWindow*)> act;
    bool done = false;
};

gboolean TryDeed(gpointer data) {
    auto& deed = *static_cast<Deed*>(data);
    GtkWindow* splash = OpenSplash();
    if (!splash || !IsOnScreen(splash)) return G_SOURCE_CONTINUE;
    deed.done = true;
    deed.act(splash);
    return G_SOURCE_REMOVE;
}

// Shows the splash, if nobody does anything about it for so long, and tells how long it stayed.
Clock::duration Stay(std::chrono::milliseconds moment, std::function<void(GtkWindow*)> act) {
    EXPECT_TRUE(RunUntil([] { return !OpenSplash(); }));
    Deed deed{std::move(act)};
    const unsigned source = g_timeout_add(20, TryDeed, &deed);
    const Clock::time_point begin = Clock::now();
    frmSplash::ShowForAMoment(moment);
    EXPECT_TRUE(deed.done) << "no splash";
    if (!deed.done) g_source_remove(source);
    return Clock::now() - begin;
}

void Click(GtkWindow* window) {
    int x = 0, y = 0;
    gdk_window_get_origin(gtk_widget_get_window(GTK_WIDGET(window)), &x, &y);
    wxUIActionSimulator mouse;
    mouse.MouseMove(x + 50, y + 50);
    mouse.MouseClick();
}

// A key as the display sends it to a window.
void PressKey(GtkWindow* window) {
    GdkEvent* event = gdk_event_new(GDK_KEY_PRESS);
    event->key.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(GTK_WIDGET(window))));
    event->key.time = GDK_CURRENT_TIME;
    event->key.keyval = GDK_KEY_Escape;
    gdk_event_set_device(event,
                         gdk_seat_get_keyboard(gdk_display_get_default_seat(gdk_display_get_default())));
    gtk_main_do_event(event);
    gdk_event_free(event);
}

}  // namespace

TEST(Splash, GoesByItself) {
    EXPECT_GE(Stay(500ms, [](GtkWindow*) {}), 500ms);
}

TEST(Splash, GoesAtOnceWhenItIsClickedOrAKeyReachesIt) {
    EXPECT_LT(Stay(1min, Click), 1min);
    EXPECT_LT(Stay(1min, PressKey), 1min);
}

TEST(Splash, LeavesTheKeyboardWhereTheUserTypes) {
    auto* frame = new wxFrame(nullptr, wxID_ANY, L"Writing");
    auto* text = new wxTextCtrl(frame, wxID_ANY);
    frame->Show();
    frame->Raise();
    text->SetFocus();
    ASSERT_TRUE(RunUntil([&] { return frame->IsActive() && text->HasFocus(); }));
    Stay(500ms, [](GtkWindow*) {
        wxUIActionSimulator keyboard;
        keyboard.Text("abc");
    });
    EXPECT_TRUE(RunUntil([&] { return text->GetValue() == L"abc"; })) << text->GetValue();
    EXPECT_TRUE(frame->IsActive());
    frame->Destroy();
    RunEvents();
}
