#include "tray/TrayAction_unix.h"

#include <gdk/gdkx.h>
#include <gtk/gtk.h>
#include <wx/app.h>

#include <functional>
#include <utility>
#include <vector>

#include "tray/TrayArea_unix.h"

namespace {

// How long a menu waits for a button to be released, and how often it looks.
constexpr int kLookMilliseconds = 20;
constexpr int kMostLooks = 100;

// Tells the window manager when the user last did something here (0: now). It gives the focus to windows that
// open afterwards only when that is later than what the user did in other programs.
void NoteUserTime(guint32 time) {
    GdkDisplay* display = gdk_display_get_default();
    if (!GDK_IS_X11_DISPLAY(display)) return;
    GdkWindow* leader = gdk_display_get_default_group(display);
    if (!time) {
        gdk_window_set_events(leader, GdkEventMask(gdk_window_get_events(leader) | GDK_PROPERTY_CHANGE_MASK));
        time = gdk_x11_get_server_time(leader);
    }
    gdk_x11_window_set_user_time(leader, time);
}

void Report(const TrayIcon& icon, std::vector<TrayMessage> messages) {
    NoteUserTime(0);
    wxTheApp->CallAfter([number = icon.number, messages = std::move(messages)] {
        for (const TrayMessage message : messages) {
            const TrayIcon* receiver = TrayArea::Get().Find(number);
            if (receiver) receiver->Report(message);
        }
    });
}

bool ButtonIsHeld() {
    GdkDevice* pointer = gdk_seat_get_pointer(gdk_display_get_default_seat(gdk_display_get_default()));
    GdkModifierType state{};
    gdk_device_get_state(pointer, gdk_get_default_root_window(), nullptr, &state);
    return state & (GDK_BUTTON1_MASK | GDK_BUTTON2_MASK | GDK_BUTTON3_MASK);
}

struct PendingMenu {
    unsigned long number;
    int looks;
};

gboolean OpenMenuWhenButtonsAreUp(void* data) {
    auto& pending = *static_cast<PendingMenu*>(data);
    if (--pending.looks > 0 && ButtonIsHeld()) return G_SOURCE_CONTINUE;
    if (const TrayIcon* icon = TrayArea::Get().Find(pending.number))
        Report(*icon, {TrayMessage::ContextMenu});
    return G_SOURCE_REMOVE;
}

}  // namespace

void Activate(const TrayIcon& icon) {
    static gint64 last = 0;
    const gint64 before = std::exchange(last, g_get_monotonic_time());
    int doubleClick = 0;
    g_object_get(gtk_settings_get_default(), "gtk-double-click-time", &doubleClick, nullptr);
    // The second one may come from another icon, which has moved below the pointer after the first.
    if (before && last - before < doubleClick * gint64{1000}) return;
    Report(icon, {TrayMessage::LeftDown, TrayMessage::LeftUp, TrayMessage::LeftDoubleClick});
}

void ActivateSecondary(const TrayIcon& icon) { Report(icon, {TrayMessage::LeftDown, TrayMessage::LeftUp}); }

// A host that calls when the button goes down holds the pointer until it goes up, and GTK opens no menu
// before.
void AskForMenu(const TrayIcon& icon) {
    if (!ButtonIsHeld()) return Report(icon, {TrayMessage::ContextMenu});
    g_timeout_add_full(G_PRIORITY_DEFAULT, kLookMilliseconds, OpenMenuWhenButtonsAreUp,
                       new PendingMenu{icon.number, kMostLooks},
                       [](void* pending) { delete static_cast<PendingMenu*>(pending); });
}

void ChooseFromMenu(const TrayIcon& icon, int id, guint32 time) {
    NoteUserTime(time);
    wxTheApp->CallAfter([number = icon.number, id] {
        const TrayIcon* receiver = TrayArea::Get().Find(number);
        if (!receiver) return;
        const std::function<void(int)> run = receiver->menu.Run;  // which may destroy the icon
        run(id);
    });
}
