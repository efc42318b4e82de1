#include <gtk/gtk.h>
#include <wx/nativewin.h>

#include <algorithm>
#include <cstdlib>

#include "addressbook/EntryList.h"
#include "base/Text.h"
#include "dialogs/DialogLayout.h"
#include "dialogs/NativeKeys_unix.h"

namespace {

constexpr int kHeadingPadding = 40;  // beside a heading, with the arrow of the sorted column

class EntryTree : public EntryList {
  public:
    EntryTree(wxWindow* parent, const std::vector<std::wstring>& headings, int characters, int lines) {
        std::vector<GType> types(headings.size() + 1, G_TYPE_STRING);
        types[0] = G_TYPE_BOOLEAN;
        store_ = gtk_list_store_newv(static_cast<int>(types.size()), types.data());
        tree_ = GTK_TREE_VIEW(gtk_tree_view_new_with_model(GTK_TREE_MODEL(store_)));
        g_object_unref(store_);  // the list keeps it
        gtk_tree_view_set_enable_search(tree_, FALSE);

        GtkCellRenderer* box = gtk_cell_renderer_toggle_new();
        g_signal_connect(box, "toggled", G_CALLBACK(OnToggled), this);
        AddColumn("", box, "active", 0, -1);
        const int width = RoomForText(*parent, characters, 1).x;
        for (std::size_t i = 0; i < headings.size(); ++i) {
            GtkCellRenderer* text = gtk_cell_renderer_text_new();
            g_object_set(text, "ellipsize", PANGO_ELLIPSIZE_END, nullptr);
            const int least = parent->GetTextExtent(headings[i]).x + parent->FromDIP(kHeadingPadding);
            AddColumn(ToUtf8(headings[i]), text, "text", static_cast<int>(i) + 1, std::max(width, least));
        }
        g_signal_connect(tree_, "row-activated", G_CALLBACK(OnActivated), this);
        g_signal_connect(tree_, "key-press-event", G_CALLBACK(OnKey), this);

        GtkWidget* scrolled = gtk_scrolled_window_new(nullptr, nullptr);
        gtk_scrolled_window_set_shadow_type(GTK_SCROLLED_WINDOW(scrolled), GTK_SHADOW_IN);
        gtk_container_add(GTK_CONTAINER(scrolled), GTK_WIDGET(tree_));
        gtk_widget_set_can_focus(scrolled, FALSE);  // the rows get the keyboard, not what they scroll in
        gtk_widget_show_all(scrolled);
        window_ = new TreeWindow(parent, wxID_ANY, scrolled);
        int total = 0;
        for (int column = 0; column <= static_cast<int>(headings.size()); ++column)
            total += std::max(gtk_tree_view_column_get_fixed_width(Column(column)), parent->FromDIP(30));
        window_->SetMinSize({total + parent->FromDIP(10), RoomForText(*parent, 1, lines).y});
    }

    wxWindow& Window() const override { return *window_; }
    int Count() const override { return gtk_tree_model_iter_n_children(GTK_TREE_MODEL(store_), nullptr); }

    std::wstring Text(int row, int column) const override {
        g_autofree char* text = nullptr;
        GtkTreeIter at = Row(row);
        // The box in front has no text.
        if (column > 0) gtk_tree_model_get(GTK_TREE_MODEL(store_), &at, column, &text, -1);
        return FromUtf8(text ? text : "");
    }
    void SetText(int row, int column, const std::wstring& text) override {
        GtkTreeIter at = Row(row);
        gtk_list_store_set(store_, &at, column, ToUtf8(text).c_str(), -1);
    }
    void Append() override { gtk_list_store_insert_with_values(store_, nullptr, -1, 0, FALSE, -1); }
    void Delete(int row) override {
        GtkTreeIter at = Row(row);
        gtk_list_store_remove(store_, &at);
    }

    bool IsChecked(int row) const override {
        gboolean on = FALSE;
        GtkTreeIter at = Row(row);
        gtk_tree_model_get(GTK_TREE_MODEL(store_), &at, 0, &on, -1);
        return on;
    }
    void Check(int row, bool on) override {
        GtkTreeIter at = Row(row);
        gtk_list_store_set(store_, &at, 0, on, -1);
    }

    void ShowSorted(int column, bool ascending) override {
        for (int i = 0; GtkTreeViewColumn* each = Column(i); ++i)
            gtk_tree_view_column_set_sort_indicator(each, i == column);
        gtk_tree_view_column_set_sort_order(Column(column),
                                            ascending ? GTK_SORT_ASCENDING : GTK_SORT_DESCENDING);
    }

  private:
    // A stop of the Tab key.
    class TreeWindow : public wxNativeWindow {
      public:
        using wxNativeWindow::wxNativeWindow;
        bool AcceptsFocus() const override { return true; }
    };

    void AddColumn(const std::string& heading, GtkCellRenderer* cell, const char* attribute, int index,
                   int width) {
        GtkTreeViewColumn* column =
            gtk_tree_view_column_new_with_attributes(heading.c_str(), cell, attribute, index, nullptr);
        gtk_tree_view_column_set_clickable(column, TRUE);
        if (width >= 0) {
            gtk_tree_view_column_set_sizing(column, GTK_TREE_VIEW_COLUMN_FIXED);
            gtk_tree_view_column_set_fixed_width(column, width);
            gtk_tree_view_column_set_resizable(column, TRUE);
            gtk_tree_view_column_set_expand(column, TRUE);
        }
        g_signal_connect(column, "clicked", G_CALLBACK(OnClicked), this);
        gtk_tree_view_append_column(tree_, column);
    }

    GtkTreeViewColumn* Column(int index) const { return gtk_tree_view_get_column(tree_, index); }
    GtkTreeIter Row(int row) const {
        GtkTreeIter at{};
        gtk_tree_model_iter_nth_child(GTK_TREE_MODEL(store_), &at, nullptr, row);
        return at;
    }

    void Toggle(int row) {
        Check(row, !IsChecked(row));
        if (OnCheck) OnCheck();
    }
    static void OnToggled(GtkCellRendererToggle*, char* path, EntryTree* list) {
        list->Toggle(std::atoi(path));
    }
    static gboolean OnKey(GtkWidget*, GdkEventKey* key, EntryTree* list) {
        if (PassKey(*list->window_, *key)) return TRUE;
        const auto column = static_cast<int>(key->keyval) - GDK_KEY_0;
        if (!(key->state & GDK_CONTROL_MASK) || column < 1 || !list->Column(column)) return FALSE;
        if (list->OnHeading) list->OnHeading(column);
        return TRUE;
    }
    // A double click or the space bar says which row is meant.
    static void OnActivated(GtkTreeView*, GtkTreePath* path, GtkTreeViewColumn*, EntryTree* list) {
        list->Toggle(gtk_tree_path_get_indices(path)[0]);
    }
    static void OnClicked(GtkTreeViewColumn* clicked, EntryTree* list) {
        for (int i = 0; GtkTreeViewColumn* each = list->Column(i); ++i) {
            if (each == clicked && list->OnHeading) list->OnHeading(i);
        }
    }

    GtkListStore* store_ = nullptr;
    GtkTreeView* tree_ = nullptr;
    TreeWindow* window_ = nullptr;
};

}  // namespace

std::unique_ptr<EntryList> EntryList::Create(wxWindow* parent, const std::vector<std::wstring>& headings,
                                             int characters, int lines) {
    return std::make_unique<EntryTree>(parent, headings, characters, lines);
}
