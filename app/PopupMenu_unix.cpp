#include <gtk/gtk.h>
#include <wx/menu.h>
#include <wx/window.h>

#include "app/PopupMenu.h"
#include "base/basWait.h"

namespace {

void OnHidden(GtkWidget*, gpointer open) {
    *static_cast<bool*>(open) = false;
    WakeWaits();
}

// The toolkit asks an owner's visible window for the place, and the main window has none.
GdkWindow* PlaceOfPointer(GdkRectangle& place) {
    GdkDisplay* display = gdk_display_get_default();
    GdkScreen* screen = nullptr;
    place = {0, 0, 1, 1};
    gdk_device_get_position(gdk_seat_get_pointer(gdk_display_get_default_seat(display)), &screen, &place.x,
                            &place.y);
    return gdk_screen_get_root_window(screen);
}

}  // namespace

std::optional<int> PopupMenuAtPointer(wxWindow& owner, wxMenu& menu) {
    std::optional<int> chosen;
    const auto choose = [&](wxCommandEvent& event) { chosen = event.GetId(); };
    owner.Bind(wxEVT_MENU, choose);
    menu.SetInvokingWindow(&owner);

    GtkWidget* popup = menu.m_menu;
    bool open = true;
    const gulong hidden = g_signal_connect(popup, "hide", G_CALLBACK(OnHidden), &open);
    GdkRectangle place;
    GdkWindow* root = PlaceOfPointer(place);
    gtk_menu_popup_at_rect(GTK_MENU(popup), root, &place, GDK_GRAVITY_NORTH_WEST, GDK_GRAVITY_NORTH_WEST,
                           gtk_get_current_event());
    // Another program may hold the mouse, and then no menu opens.
    if (gtk_widget_get_visible(popup)) WaitUntil([&] { return !open; });
    g_signal_handler_disconnect(popup, hidden);
    gtk_menu_popdown(GTK_MENU(popup));

    menu.SetInvokingWindow(nullptr);
    owner.Unbind(wxEVT_MENU, choose);
    return chosen;
}

void AppendPicture(wxMenu& menu, int id, const wxBitmapBundle& picture, int height) {
    wxMenuItem* item = menu.Append(id, L" ");
    item->Enable(false);
    GtkWidget* widget = item->GetMenuItem();
    if (GtkWidget* label = gtk_bin_get_child(GTK_BIN(widget))) gtk_widget_destroy(label);
    const wxBitmap bitmap = picture.GetBitmap(wxDefaultSize);
    GtkWidget* image = bitmap.IsOk() ? gtk_image_new_from_pixbuf(bitmap.GetPixbuf()) : gtk_image_new();
    gtk_widget_set_halign(image, GTK_ALIGN_START);
    gtk_widget_set_size_request(image, -1, height);
    gtk_container_add(GTK_CONTAINER(widget), image);
    gtk_widget_show_all(widget);
}

void RaiseWindow(wxWindow& window) {
    GdkWindow* native = gtk_widget_get_window(window.GetHandle());
    if (native) gdk_window_raise(native);
}
