#include <gtk/gtk.h>
#include <wx/menu.h>
#include <wx/window.h>

#include "app/PopupMenu.h"
#include "dialogs/Wait.h"
#include "res/Theme.h"

namespace {

void OnHidden(GtkWidget*, gpointer open) {
    *static_cast<bool*>(open) = false;
    WakeWaits();
}

// What the menu takes its time and its pointer from: the event being handled, or one like it where the wish
// to open the menu came by another way. It is the caller's.
GdkEvent* TriggerEvent(GdkWindow* window, GdkDevice* pointer) {
    if (GdkEvent* current = gtk_get_current_event()) return current;
    GdkEvent* event = gdk_event_new(GDK_BUTTON_RELEASE);
    event->button.window = GDK_WINDOW(g_object_ref(window));
    gdk_event_set_device(event, pointer);
    return event;
}

// wxWidgets shows submenus when it appends them. GTK would take them for open and let a click on their entry
// close them.
void HideSubmenus(const wxMenu& menu) {
    for (const wxMenuItem* const item : menu.GetMenuItems()) {
        const wxMenu* const submenu = item->GetSubMenu();
        if (!submenu) continue;
        gtk_widget_hide(submenu->m_menu);
        HideSubmenus(*submenu);
    }
}

// wxWidgets' PopupMenu needs a visible window, and the main window is none.
void Open(GtkMenu* menu, std::optional<wxPoint> at) {
    GdkDevice* pointer = gdk_seat_get_pointer(gdk_display_get_default_seat(gdk_display_get_default()));
    GdkScreen* screen = nullptr;
    GdkRectangle place{0, 0, 1, 1};
    gdk_device_get_position(pointer, &screen, &place.x, &place.y);
    if (at) place = {at->x, at->y, 1, 1};
    GdkWindow* root = gdk_screen_get_root_window(screen);
    g_autoptr(GdkEvent) trigger = TriggerEvent(root, pointer);
    gtk_menu_popup_at_rect(menu, root, &place, GDK_GRAVITY_NORTH_WEST, GDK_GRAVITY_NORTH_WEST, trigger);
    // Whoever came by the keyboard goes on with it.
    if (at) gtk_menu_shell_select_first(GTK_MENU_SHELL(menu), TRUE);
}

}  // namespace

std::optional<int> OpenPopupMenu(wxWindow& owner, wxMenu& menu, std::optional<wxPoint> at) {
    std::optional<int> chosen;
    const auto choose = [&](wxCommandEvent& event) { chosen = event.GetId(); };
    owner.Bind(wxEVT_MENU, choose);
    menu.SetInvokingWindow(&owner);

    LoadTheme();
    HideSubmenus(menu);
    GtkWidget* popup = menu.m_menu;
    bool open = true;
    const gulong hidden = g_signal_connect(popup, "hide", G_CALLBACK(OnHidden), &open);
    Open(GTK_MENU(popup), at);
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
    // Themes make pale what cannot be chosen.
    GtkCssProvider* style = gtk_css_provider_new();
    gtk_css_provider_load_from_data(style, "image { opacity: 1; -gtk-icon-effect: none; }", -1, nullptr);
    gtk_style_context_add_provider(gtk_widget_get_style_context(image), GTK_STYLE_PROVIDER(style),
                                   GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(style);
    gtk_widget_set_size_request(image, -1, height);
    gtk_container_add(GTK_CONTAINER(widget), image);
    gtk_widget_show_all(widget);
}
