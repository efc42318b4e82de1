#include <gdk/gdkx.h>

#include "notes/ScreenWatch.h"

// A window manager learns of a change of screens when the program does, and until it has dealt with it, it
// may keep a window within the old screens. So it counts as a change, too, when the window manager has
// published the new area for windows.
struct ScreenWatch::Source {
    std::function<void()> changed;
    GdkScreen* screen = gdk_screen_get_default();
    gulong monitors = 0, size = 0;
    guint idle = 0;

    explicit Source(std::function<void()> call) : changed(std::move(call)) {
        if (!screen) return;
        monitors = g_signal_connect(screen, "monitors-changed", G_CALLBACK(OnSignal), this);
        size = g_signal_connect(screen, "size-changed", G_CALLBACK(OnSignal), this);
        GdkWindow* const root = gdk_screen_get_root_window(screen);
        const int events = gdk_window_get_events(root) | GDK_PROPERTY_CHANGE_MASK;
        gdk_window_set_events(root, static_cast<GdkEventMask>(events));
        gdk_window_add_filter(root, OnRootEvent, this);
    }

    ~Source() {
        if (idle) g_source_remove(idle);
        if (!screen) return;
        g_signal_handler_disconnect(screen, monitors);
        g_signal_handler_disconnect(screen, size);
        gdk_window_remove_filter(gdk_screen_get_root_window(screen), OnRootEvent, this);
    }

    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    void Note() {
        if (!idle) idle = g_idle_add(OnIdle, this);
    }

    static void OnSignal(GdkScreen*, gpointer self) { static_cast<Source*>(self)->Note(); }

    static GdkFilterReturn OnRootEvent(GdkXEvent* native, GdkEvent*, gpointer self) {
        const auto* event = static_cast<XEvent*>(native);
        if (event->type == PropertyNotify &&
            event->xproperty.atom == gdk_x11_get_xatom_by_name("_NET_WORKAREA")) {
            static_cast<Source*>(self)->Note();
        }
        return GDK_FILTER_CONTINUE;
    }

    static gboolean OnIdle(gpointer data) {
        auto* self = static_cast<Source*>(data);
        self->idle = 0;
        self->changed();
        return G_SOURCE_REMOVE;
    }
};

ScreenWatch::ScreenWatch(std::function<void()> changed)
    : source_(std::make_unique<Source>(std::move(changed))) {}
ScreenWatch::~ScreenWatch() = default;
