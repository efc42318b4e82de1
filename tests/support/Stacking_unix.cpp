#include <gdk/gdkx.h>
#include <gtk/gtk.h>
#include <wx/toplevel.h>

#include <algorithm>
#include <vector>

#include "tests/support/Stacking.h"

namespace {

// A list that the window manager keeps with a window.
std::vector<gulong> ListOf(GdkWindow* window, const char* name) {
    GdkAtom type;
    gint format = 0, bytes = 0;
    guchar* data = nullptr;
    if (!window || !gdk_property_get(window, gdk_atom_intern_static_string(name), GDK_NONE, 0, 4096, FALSE,
                                     &type, &format, &bytes, &data))
        return {};
    const auto* items = reinterpret_cast<const gulong*>(data);
    std::vector<gulong> list(items, items + static_cast<std::size_t>(bytes) / sizeof(gulong));
    g_free(data);
    return list;
}

GdkWindow* NativeOf(const wxTopLevelWindow& window) { return gtk_widget_get_window(window.GetHandle()); }

}  // namespace

bool IsOnScreen(const wxTopLevelWindow& window) {
    return NativeOf(window) && gdk_window_is_visible(NativeOf(window));
}

bool StandsAbove(const wxTopLevelWindow& upper, const wxTopLevelWindow& lower) {
    // From the lowest to the highest.
    const std::vector<gulong> all = ListOf(gdk_get_default_root_window(), "_NET_CLIENT_LIST_STACKING");
    const auto at = std::find(all.begin(), all.end(), gdk_x11_window_get_xid(NativeOf(lower)));
    return std::find(at, all.end(), gdk_x11_window_get_xid(NativeOf(upper))) != all.end();
}

bool HasState(const wxTopLevelWindow& window, const char* state) {
    // The property's values are given as GDK's own names for them.
    const auto wanted = reinterpret_cast<gulong>(gdk_atom_intern_static_string(state));
    const std::vector<gulong> states = ListOf(NativeOf(window), "_NET_WM_STATE");
    return std::find(states.begin(), states.end(), wanted) != states.end();
}

bool IsKeptAbove(const wxTopLevelWindow& window) { return HasState(window, "_NET_WM_STATE_ABOVE"); }
