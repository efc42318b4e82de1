#include <gtest/gtest.h>
#include <wx/uiaction.h>

#include <vector>

#include "base/Text.h"
#include "tests/app/MenuOnScreen.h"
#include "tests/support/Toplevels_unix.h"

namespace {

class GtkMenuOnScreen : public MenuOnScreen {
  public:
    explicit GtkMenuOnScreen(GtkMenuShell* menu) : menu_(menu) {}

    bool Has(const std::wstring& caption) const override { return Item(caption) != nullptr; }
    bool IsEnabled(const std::wstring& caption) const override {
        return Has(caption) && gtk_widget_get_sensitive(GTK_WIDGET(Item(caption)));
    }
    bool IsChecked(const std::wstring& caption) const override {
        return Has(caption) && gtk_check_menu_item_get_active(GTK_CHECK_MENU_ITEM(Item(caption)));
    }
    bool OpensSubmenu(const std::wstring& caption) const override {
        return Has(caption) && gtk_menu_item_get_submenu(Item(caption)) != nullptr;
    }
    wxPoint Place() const override {
        GtkWidget* const window = gtk_widget_get_toplevel(GTK_WIDGET(menu_));
        wxPoint place;
        gdk_window_get_origin(gtk_widget_get_window(window), &place.x, &place.y);
        return place;
    }
    bool IsReadyForKeys(const std::wstring& caption) const override {
        return Has(caption) && gtk_menu_shell_get_selected_item(menu_) == GTK_WIDGET(Item(caption));
    }
    int PictureHeight() const override {
        GtkWidget* picture = GTK_WIDGET(Items().at(0));
        GtkWidget* image = gtk_bin_get_child(GTK_BIN(picture));
        if (!GTK_IS_IMAGE(image) || gtk_widget_get_sensitive(picture)) return 0;
        return gtk_widget_get_allocated_height(image);
    }
    void Choose(const std::wstring& caption) override {
        ASSERT_TRUE(Has(caption)) << ToUtf8(caption);
        gtk_menu_shell_activate_item(menu_, GTK_WIDGET(Item(caption)), TRUE);
    }
    void Click(const std::wstring& caption) override {
        ASSERT_TRUE(Has(caption)) << ToUtf8(caption);
        GtkWidget* const item = GTK_WIDGET(Item(caption));
        GtkAllocation place;
        gtk_widget_get_allocation(item, &place);
        const wxPoint menu = Place();
        wxUIActionSimulator mouse;
        mouse.MouseMove(menu.x + place.x + place.width / 2, menu.y + place.y + place.height / 2);
        mouse.MouseClick();
    }
    bool SubmenuIsOpen(const std::wstring& caption) const override {
        GtkWidget* const submenu = gtk_menu_item_get_submenu(Item(caption));
        return submenu && gtk_widget_get_mapped(submenu);
    }
    void Close() override { gtk_menu_shell_deactivate(menu_); }

  private:
    std::vector<GtkMenuItem*> Items() const {
        std::vector<GtkMenuItem*> items;
        GList* children = gtk_container_get_children(GTK_CONTAINER(menu_));
        for (GList* child = children; child; child = child->next) {
            items.push_back(GTK_MENU_ITEM(child->data));
        }
        g_list_free(children);
        return items;
    }
    GtkMenuItem* Item(const std::wstring& caption) const {
        for (GtkMenuItem* item : Items()) {
            const char* label = gtk_menu_item_get_label(item);
            if (label && FromUtf8(label) == caption) return item;
        }
        return nullptr;
    }

    GtkMenuShell* menu_;
};

}  // namespace

std::unique_ptr<MenuOnScreen> MenuOnScreen::Find() {
    std::unique_ptr<MenuOnScreen> open;  // the newest
    for (GtkWindow* window : Toplevels()) {
        GtkWidget* child = gtk_bin_get_child(GTK_BIN(window));
        if (gtk_widget_get_visible(GTK_WIDGET(window)) && child && GTK_IS_MENU(child))
            open = std::make_unique<GtkMenuOnScreen>(GTK_MENU_SHELL(child));
    }
    return open;
}
