#include <gdk/gdkx.h>
#include <gtk/gtk.h>
#include <wx/gdicmn.h>
#include <wx/region.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "base/twips.h"
#include "model/NoteColor.h"
#include "model/NoteLayout.h"
#include "notes/NoteWindow.h"

// The pixels of wxWidgets are logical ones: GTK multiplies by the scale factor itself.
double TwipsPerPixelX(const wxWindow&) { return kTwipsPerLogicalPixel; }
double TwipsPerPixelY(const wxWindow&) { return kTwipsPerLogicalPixel; }

int DisplayDepth() { return wxDisplayDepth(); }

std::int32_t DisplayColor(std::int32_t code) { return DisplayColor(code, DisplayDepth()); }

void ShapeNoteWindow(wxFrame& window, int widthPixels, int heightPixels) {
    // Row by row what the outline leaves of the bottom right corner: a region of few rectangles costs the
    // server far less than a bitmap of the whole note.
    const auto outline = NoteOutline(widthPixels, heightPixels, 1);
    const PixelPoint upper = outline[0], middle = outline[1], lower = outline[2];
    const int top = std::clamp(upper.y, 0, heightPixels);
    wxRegion shape(0, 0, widthPixels, top);
    for (int y = top; y < heightPixels; ++y) {
        const PixelPoint &a = y < middle.y ? upper : middle, &b = y < middle.y ? middle : lower;
        const int right = a.x + (b.x - a.x) * (2 * (y - a.y) + 1) / (2 * (b.y - a.y));
        shape.Union(0, y, std::max(right, 1), 1);
    }
    window.SetShape(shape);
}

void PlaceWindow(wxFrame& window, const wxRect& rect) {
    window.SetSize(rect.GetSize());
    auto* const gtk = GTK_WINDOW(window.GetHandle());
    gtk_window_resize(gtk, rect.width, rect.height);
    if (!gtk_widget_get_mapped(window.GetHandle())) {
        gtk_window_move(gtk, rect.x, rect.y);
        return;
    }
    // wxWidgets and GTK ask only for what differs from the place and the size that they believe the window to
    // have, and what they believe is what the last event said.
    gdk_window_move_resize(gtk_widget_get_window(window.GetHandle()), rect.x, rect.y, rect.width,
                           rect.height);
}

std::optional<wxRect> RectOnScreen(const wxFrame& window) {
    GdkWindow* const native = gtk_widget_get_window(window.GetHandle());
    if (!native || !window.IsShown()) return std::nullopt;
    XWindowAttributes now;
    if (!XGetWindowAttributes(GDK_WINDOW_XDISPLAY(native), GDK_WINDOW_XID(native), &now) ||
        now.map_state != IsViewable) {
        return std::nullopt;
    }
    int x = 0, y = 0;
    gdk_window_get_origin(native, &x, &y);
    const int scale = gdk_window_get_scale_factor(native);
    return wxRect(x, y, now.width / scale, now.height / scale);
}

void RaiseNoteWindow(wxFrame& window) {
    if (GdkWindow* native = gtk_widget_get_window(window.GetHandle())) gdk_window_raise(native);
}

void HaveNoFrame(wxFrame& window) {
    // wxWidgets asks the window manager how wide the frame will be before it shows a window, and makes the
    // window smaller by that. Some window managers answer with the frame of ordinary windows.
    g_signal_handlers_disconnect_matched(
        window.GetHandle(), static_cast<GSignalMatchType>(G_SIGNAL_MATCH_ID | G_SIGNAL_MATCH_DATA),
        g_signal_lookup("property-notify-event", GTK_TYPE_WIDGET), 0, nullptr, nullptr,
        static_cast<wxTopLevelWindow*>(&window));
    gtk_style_context_add_class(gtk_widget_get_style_context(window.GetHandle()), "note");
    gtk_window_set_skip_pager_hint(GTK_WINDOW(window.GetHandle()), TRUE);
}

void AcceptKeys(wxFrame& window) {
    // Keys go to the widget that has the focus inside the window, and GTK gives it to none by itself.
    gtk_widget_set_can_focus(window.m_wxwindow, TRUE);
    gtk_window_set_focus(GTK_WINDOW(window.GetHandle()), window.m_wxwindow);
}

void ActivateNoteWindow(wxFrame& window) {
    gtk_window_present_with_time(GTK_WINDOW(window.GetHandle()), gtk_get_current_event_time());
}

namespace {

// Has the window manager set two states of a window on the screen, or one.
void AskForStates(const wxFrame& window, const char* state, const char* another = nullptr) {
    GdkWindow* const native = gtk_widget_get_window(window.GetHandle());
    GdkDisplay* const display = gdk_window_get_display(native);
    const auto atom = [display](const char* name) {
        return static_cast<long>(gdk_x11_get_xatom_by_name_for_display(display, name));
    };
    constexpr long kAdd = 1, kFromApplication = 1;
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = GDK_WINDOW_XID(native);
    event.xclient.message_type = static_cast<Atom>(atom("_NET_WM_STATE"));
    event.xclient.format = 32;
    event.xclient.data.l[0] = kAdd;
    event.xclient.data.l[1] = atom(state);
    event.xclient.data.l[2] = another ? atom(another) : 0;
    event.xclient.data.l[3] = kFromApplication;
    const Window root = GDK_WINDOW_XID(gdk_screen_get_root_window(gdk_window_get_screen(native)));
    XSendEvent(GDK_DISPLAY_XDISPLAY(display), root, False, SubstructureNotifyMask | SubstructureRedirectMask,
               &event);
}

}  // namespace

void ShowNoteWindow(wxFrame& window, bool topmost) {
    constexpr char kShownBefore[] = "kivora-shown-before";
    auto* const gtk = GTK_WINDOW(window.GetHandle());
    gtk_window_set_keep_above(gtk, topmost);
    if (!window.IsShown()) {
        window.ShowWithoutActivating();
        // GTK has told the states of a new window before. Window managers forget those of a window that was
        // hidden, some of them only now. GTK would ask for each in two or three messages, which cost as much
        // as the window.
        if (!g_object_get_data(G_OBJECT(gtk), kShownBefore)) {
            g_object_set_data(G_OBJECT(gtk), kShownBefore, gtk);
            return;
        }
        AskForStates(window, "_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER");
        if (topmost) AskForStates(window, "_NET_WM_STATE_ABOVE");
    }
    if (topmost) RaiseNoteWindow(window);
}

void WhenOnScreen(wxFrame& window, std::function<void()> then) {
    struct Waiting {
        GtkWidget* window;
        std::function<void()> then;
        guint timeout = 0;
    };
    auto* const waiting = new Waiting{window.GetHandle(), std::move(then)};
    const auto mapped = +[](GtkWidget* widget, GdkEvent*, gpointer data) -> gboolean {
        g_signal_handlers_disconnect_by_data(widget, data);
        return FALSE;
    };
    const auto late = +[](gpointer data) -> gboolean {
        auto* const waited = static_cast<Waiting*>(data);
        waited->timeout = 0;
        g_signal_handlers_disconnect_by_data(waited->window, data);
        return G_SOURCE_REMOVE;
    };
    // Called when the handler goes, by itself or with the window.
    const auto gone = +[](gpointer data, GClosure*) {
        const std::unique_ptr<Waiting> waited(static_cast<Waiting*>(data));
        if (waited->timeout) g_source_remove(waited->timeout);
        waited->then();
    };
    g_signal_connect_data(waiting->window, "map-event", G_CALLBACK(mapped), waiting, gone,
                          static_cast<GConnectFlags>(0));
    waiting->timeout = g_timeout_add(1000, late, waiting);
}
