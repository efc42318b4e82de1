#include <wx/uiaction.h>

#include "base/Text.h"
#include "tests/app/MenuOnScreen.h"
#include "tests/support/Toplevels_unix.h"

namespace {

MenuOnScreen::Item Described(GtkMenuShell* menu, GtkWidget* widget, const wxPoint& place) {
    auto* const item = GTK_MENU_ITEM(widget);
    const char* const label = gtk_menu_item_get_label(item);
    const auto click = [widget, place] {
        GtkAllocation inMenu;
        gtk_widget_get_allocation(widget, &inMenu);
        wxUIActionSimulator mouse;
        mouse.MouseMove(place.x + inMenu.x + inMenu.width / 2, place.y + inMenu.y + inMenu.height / 2);
        mouse.MouseClick();
    };
    return {.caption = FromUtf8(label ? label : ""),
            .enabled = gtk_widget_get_sensitive(widget) != FALSE,
            .checked =
                GTK_IS_CHECK_MENU_ITEM(widget) && gtk_check_menu_item_get_active(GTK_CHECK_MENU_ITEM(widget)),
            .opensSubmenu = gtk_menu_item_get_submenu(item) != nullptr,
            .isReadyForKeys = gtk_menu_shell_get_selected_item(menu) == widget,
            .choose = [menu, widget] { gtk_menu_shell_activate_item(menu, widget, TRUE); },
            .click = click};
}

}  // namespace

std::optional<MenuOnScreen> MenuOnScreen::Find() {
    GtkMenuShell* menu = nullptr;  // the newest
    for (GtkWindow* window : Toplevels()) {
        GtkWidget* child = gtk_bin_get_child(GTK_BIN(window));
        if (gtk_widget_get_visible(GTK_WIDGET(window)) && child && GTK_IS_MENU(child))
            menu = GTK_MENU_SHELL(child);
    }
    if (!menu) return std::nullopt;
    MenuOnScreen found{.close = [menu] { gtk_menu_shell_deactivate(menu); }};
    gdk_window_get_origin(gtk_widget_get_window(gtk_widget_get_toplevel(GTK_WIDGET(menu))), &found.place.x,
                          &found.place.y);
    GList* const items = gtk_container_get_children(GTK_CONTAINER(menu));
    for (GList* item = items; item; item = item->next)
        found.items.push_back(Described(menu, GTK_WIDGET(item->data), found.place));
    GtkWidget* const image = gtk_bin_get_child(GTK_BIN(items->data));
    if (GTK_IS_IMAGE(image) && !found.items[0].enabled)
        found.pictureHeight = gtk_widget_get_allocated_height(image);
    g_list_free(items);
    return found;
}
