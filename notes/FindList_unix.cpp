#include <gtk/gtk.h>
#include <wx/nativewin.h>

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>

#include "base/Text.h"
#include "dialogs/DialogLayout.h"
#include "dialogs/NativeKeys_unix.h"
#include "notes/FindList.h"
#include "res/Resources.h"

namespace {

// From so many rows more or less on the list is made anew, which costs less than telling it of each.
constexpr int kManyRows = 200;

constexpr int kPicturePixels = 16;

class FindTree : public FindList {
  public:
    FindTree(wxWindow* parent, Source source) : source_(std::move(source)) {
        tree_ = GTK_TREE_VIEW(gtk_tree_view_new());
        gtk_tree_view_set_enable_search(tree_, FALSE);
        GtkTreeViewColumn* text = AddColumn(L"Notiz", parent, 32, &Row::text);
        gtk_tree_view_column_set_expand(text, TRUE);
        date_ = AddColumn(L"Geschrieben", parent, 22, &Row::date);
        GtkTreeViewColumn* color = AddColumn(L"Farbe", parent, 11, &Row::color);
        // Not before the text, where it would take the cell's name from readers.
        GtkCellRenderer* picture = gtk_cell_renderer_pixbuf_new();
        gtk_tree_view_column_pack_start(color, picture, FALSE);
        gtk_tree_view_column_set_cell_data_func(color, picture, OnPicture, this, nullptr);
        gtk_cell_layout_reorder(GTK_CELL_LAYOUT(color), picture, 0);
        gtk_tree_view_set_fixed_height_mode(tree_, TRUE);
        SetRows(0);

        GtkTreeSelection* selection = gtk_tree_view_get_selection(tree_);
        gtk_tree_selection_set_mode(selection, GTK_SELECTION_MULTIPLE);
        g_signal_connect(selection, "changed", G_CALLBACK(OnChanged), this);
        g_signal_connect(tree_, "cursor-changed", G_CALLBACK(OnCursor), this);
        g_signal_connect(tree_, "row-activated", G_CALLBACK(OnActivated), this);
        g_signal_connect(tree_, "key-press-event", G_CALLBACK(OnKey), this);

        GtkWidget* scrolled = gtk_scrolled_window_new(nullptr, nullptr);
        gtk_widget_set_can_focus(scrolled, FALSE);  // or it would take what is meant for the rows
        gtk_scrolled_window_set_shadow_type(GTK_SCROLLED_WINDOW(scrolled), GTK_SHADOW_IN);
        gtk_container_add(GTK_CONTAINER(scrolled), GTK_WIDGET(tree_));
        gtk_widget_show_all(scrolled);
        window_ = new TreeWindow(parent, wxID_ANY, scrolled);
        window_->SetMinSize(RoomForText(*parent, 65, 12));
    }

    // The widgets live on for a while.
    ~FindTree() override {
        g_signal_handlers_disconnect_by_data(gtk_tree_view_get_selection(tree_), this);
        g_signal_handlers_disconnect_by_data(tree_, this);
        gtk_tree_view_set_model(tree_, nullptr);
    }

    wxWindow& Window() const override { return *window_; }

    void Show(int count, const std::vector<int>& chosen, int current) override {
        showing_ = true;
        const int before = Count();
        if (std::abs(count - before) > kManyRows) {
            SetRows(count);
        } else {
            for (int row = before; row < count; ++row)
                gtk_list_store_insert_with_values(rows_, nullptr, -1, 0, 0, -1);
            for (int row = before; row > count; --row) {
                GtkTreeIter last{};
                gtk_tree_model_iter_nth_child(GTK_TREE_MODEL(rows_), &last, nullptr, row - 1);
                gtk_list_store_remove(rows_, &last);
            }
        }
        // In this order: the keys that choose more begin where the cursor was set last.
        GtkTreeSelection* selection = gtk_tree_view_get_selection(tree_);
        gtk_tree_selection_unselect_all(selection);
        if (current >= 0) {
            GtkTreePath* path = gtk_tree_path_new_from_indices(current, -1);
            gtk_tree_view_set_cursor(tree_, path, nullptr, FALSE);
            gtk_tree_path_free(path);
        }
        for (std::size_t i = 0; i < chosen.size();) {
            std::size_t end = i + 1;
            while (end < chosen.size() && chosen[end] == chosen[end - 1] + 1) ++end;
            GtkTreePath* first = gtk_tree_path_new_from_indices(chosen[i], -1);
            GtkTreePath* last = gtk_tree_path_new_from_indices(chosen[end - 1], -1);
            gtk_tree_selection_select_range(selection, first, last);
            gtk_tree_path_free(first);
            gtk_tree_path_free(last);
            i = end;
        }
        gtk_widget_queue_draw(GTK_WIDGET(tree_));
        showing_ = false;
    }

    void CallDate(const std::wstring& heading) override {
        gtk_tree_view_column_set_title(date_, ToUtf8(heading).c_str());
    }

    std::vector<int> Chosen() const override {
        std::vector<int> chosen;
        GList* paths = gtk_tree_selection_get_selected_rows(gtk_tree_view_get_selection(tree_), nullptr);
        for (GList* path = paths; path; path = path->next)
            chosen.push_back(gtk_tree_path_get_indices(static_cast<GtkTreePath*>(path->data))[0]);
        g_list_free_full(paths, reinterpret_cast<GDestroyNotify>(gtk_tree_path_free));
        return chosen;
    }

    int Current() const override {
        GtkTreePath* path = nullptr;
        gtk_tree_view_get_cursor(tree_, &path, nullptr);
        const int row = path ? gtk_tree_path_get_indices(path)[0] : -1;
        gtk_tree_path_free(path);
        return row;
    }

  private:
    // A stop of the Tab key.
    class TreeWindow : public wxNativeWindow {
      public:
        using wxNativeWindow::wxNativeWindow;
        bool AcceptsFocus() const override { return true; }
    };

    using TextOfRow = std::wstring Row::*;

    GtkTreeViewColumn* AddColumn(const wchar_t* heading, wxWindow* parent, int characters, TextOfRow member) {
        GtkCellRenderer* cell = gtk_cell_renderer_text_new();
        g_object_set(cell, "ellipsize", PANGO_ELLIPSIZE_END, nullptr);
        GtkTreeViewColumn* column = gtk_tree_view_column_new();
        gtk_tree_view_column_set_title(column, ToUtf8(heading).c_str());
        gtk_tree_view_column_pack_start(column, cell, TRUE);
        auto* shown = new Shown{this, member};
        gtk_tree_view_column_set_cell_data_func(column, cell, OnText, shown,
                                                [](gpointer data) { delete static_cast<Shown*>(data); });
        gtk_tree_view_column_set_sizing(column, GTK_TREE_VIEW_COLUMN_FIXED);
        gtk_tree_view_column_set_fixed_width(column, RoomForText(*parent, characters, 1).x);
        gtk_tree_view_column_set_resizable(column, TRUE);
        gtk_tree_view_append_column(tree_, column);
        return column;
    }

    int Count() const { return gtk_tree_model_iter_n_children(GTK_TREE_MODEL(rows_), nullptr); }

    void SetRows(int count) {
        rows_ = gtk_list_store_new(1, G_TYPE_INT);
        for (int row = 0; row < count; ++row) gtk_list_store_insert_with_values(rows_, nullptr, -1, 0, 0, -1);
        gtk_tree_view_set_model(tree_, GTK_TREE_MODEL(rows_));
        g_object_unref(rows_);  // the list keeps it
    }

    static int RowAt(GtkTreeModel* model, GtkTreeIter* at) {
        GtkTreePath* path = gtk_tree_model_get_path(model, at);
        const int row = gtk_tree_path_get_indices(path)[0];
        gtk_tree_path_free(path);
        return row;
    }

    struct Shown {
        FindTree* list;
        TextOfRow member;
    };
    static void OnText(GtkTreeViewColumn*, GtkCellRenderer* cell, GtkTreeModel* model, GtkTreeIter* at,
                       gpointer data) {
        const auto* shown = static_cast<Shown*>(data);
        const Row row = shown->list->source_(RowAt(model, at));
        g_object_set(cell, "text", ToUtf8(row.*(shown->member)).c_str(), nullptr);
    }
    static void OnPicture(GtkTreeViewColumn*, GtkCellRenderer* cell, GtkTreeModel* model, GtkTreeIter* at,
                          gpointer data) {
        auto* list = static_cast<FindTree*>(data);
        g_object_set(cell, "surface", list->Picture(list->source_(RowAt(model, at)).picture), nullptr);
    }

    cairo_surface_t* Picture(int number) {
        const auto found = pictures_.find(number);
        if (found != pictures_.end()) return found->second.get();
        cairo_surface_t* surface = nullptr;
        if (number) {
            const int scale = gtk_widget_get_scale_factor(GTK_WIDGET(tree_));
            const int pixels = kPicturePixels * scale;
            const wxBitmap bitmap = LoadPicture(number).GetBitmap(wxSize(pixels, pixels));
            surface = gdk_cairo_surface_create_from_pixbuf(bitmap.GetPixbuf(), scale, nullptr);
        }
        return pictures_.emplace(number, Surface(surface)).first->second.get();
    }

    void Changed() {
        if (!showing_ && OnChoice) OnChoice();
    }
    static void OnChanged(GtkTreeSelection*, FindTree* list) { list->Changed(); }
    static void OnCursor(GtkTreeView*, FindTree* list) { list->Changed(); }
    static void OnActivated(GtkTreeView*, GtkTreePath*, GtkTreeViewColumn*, FindTree* list) {
        if (list->OnDoubleClick) list->OnDoubleClick();
    }
    static gboolean OnKey(GtkWidget*, GdkEventKey* key, FindTree* list) {
        if (PassKey(*list->window_, *key)) return TRUE;
        const guint32 character = gdk_keyval_to_unicode(key->keyval);
        constexpr guint kCommand = GDK_CONTROL_MASK | GDK_MOD1_MASK | GDK_SUPER_MASK;
        if (character < ' ' || character == 0x7F || (key->state & kCommand) || !list->OnTyped) return FALSE;
        list->OnTyped(static_cast<wchar_t>(character));
        return TRUE;
    }

    struct SurfaceRelease {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    };
    using Surface = std::unique_ptr<cairo_surface_t, SurfaceRelease>;

    const Source source_;
    GtkTreeView* tree_ = nullptr;
    GtkListStore* rows_ = nullptr;
    GtkTreeViewColumn* date_ = nullptr;
    TreeWindow* window_ = nullptr;
    std::map<int, Surface> pictures_;
    bool showing_ = false;  // what changes is our own doing
};

}  // namespace

std::unique_ptr<FindList> FindList::Create(wxWindow* parent, Source source) {
    return std::make_unique<FindTree>(parent, std::move(source));
}
