// The picture at the start, with a user in a hurry.
#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/frame.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

#include <chrono>
#include <functional>
#include <optional>

#include "app/frmSplash.h"
#include "tests/support/Events.h"

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

GtkWindow* OpenSplash() {
    GtkWindow* splash = nullptr;
    GList* windows = gtk_window_list_toplevels();
    for (GList* each = windows; each; each = each->next) {
        auto* window = GTK_WINDOW(each->data);
        if (gtk_widget_get_mapped(GTK_WIDGET(window)) &&
            gtk_window_get_type_hint(window) == GDK_WINDOW_TYPE_HINT_SPLASHSCREEN)
            splash = window;
    }
    g_list_free(windows);
    return splash;
}

// What is done to the splash as soon as it is on the screen, and when that was.
struct Deed {
    std::function<void(GtkWindow*)> act;
    std::optional<Clock::time_point> done = {};
};

gboolean TryDeed(gpointer data) {
    auto& deed = *static_cast<Deed*>(data);
    GtkWindow* splash = OpenSplash();
    if (!splash) return G_SOURCE_CONTINUE;
    deed.done = Clock::now();
    deed.act(splash);
    return G_SOURCE_REMOVE;
}

// Shows the splash and tells how long it stayed after the deed.
milliseconds StayAfter(std::function<void(GtkWindow*)> act) {
    EXPECT_TRUE(RunUntil([] { return !OpenSplash(); }));
    Deed deed{std::move(act)};
    const unsigned source = g_timeout_add(20, TryDeed, &deed);
    frmSplash::ShowForAMoment();
    if (deed.done) return std::chrono::duration_cast<milliseconds>(Clock::now() - *deed.done);
    g_source_remove(source);
    ADD_FAILURE() << "no splash";
    return milliseconds::max();
}

void Click(GtkWindow* window) {
    int x = 0, y = 0;
    gtk_window_get_position(window, &x, &y);
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
    const milliseconds stay = StayAfter([](GtkWindow*) {});
    EXPECT_GE(stay, milliseconds(100));
    EXPECT_LE(stay, milliseconds(400));
}

TEST(Splash, GoesAtOnceWhenItIsClickedOrAKeyReachesIt) {
    EXPECT_LE(StayAfter(Click), milliseconds(150));
    EXPECT_LE(StayAfter(PressKey), milliseconds(150));
}

TEST(Splash, LeavesTheKeyboardWhereTheUserTypes) {
    auto* frame = new wxFrame(nullptr, wxID_ANY, L"Writing");
    auto* text = new wxTextCtrl(frame, wxID_ANY);
    frame->Show();
    frame->Raise();
    text->SetFocus();
    ASSERT_TRUE(RunUntil([&] { return frame->IsActive() && text->HasFocus(); }));
    StayAfter([](GtkWindow*) {
        wxUIActionSimulator keyboard;
        keyboard.Text("abc");
    });
    EXPECT_TRUE(RunUntil([&] { return text->GetValue() == L"abc"; })) << text->GetValue();
    EXPECT_TRUE(frame->IsActive());
    frame->Destroy();
    RunEvents();
}
