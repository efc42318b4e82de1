#include <gtk/gtk.h>
#include <wx/listbox.h>

#include "notes/ListRows.h"

namespace {

GtkTreeView* RowsOf(const wxListBox& list) {
    return GTK_TREE_VIEW(gtk_bin_get_child(GTK_BIN(list.GetHandle())));
}

}  // namespace

void EndInDots(wxListBox& list) {
    GList* columns = gtk_tree_view_get_columns(RowsOf(list));
    for (GList* column = columns; column; column = column->next) {
        GList* cells = gtk_cell_layout_get_cells(GTK_CELL_LAYOUT(column->data));
        for (GList* cell = cells; cell; cell = cell->next) {
            if (GTK_IS_CELL_RENDERER_TEXT(cell->data))
                g_object_set(cell->data, "ellipsize", PANGO_ELLIPSIZE_END, nullptr);
        }
        g_list_free(cells);
    }
    g_list_free(columns);
}

void MakeRowsAlike(wxListBox& list) {
    GtkTreeView* rows = RowsOf(list);
    gtk_tree_view_column_set_sizing(gtk_tree_view_get_column(rows, 0), GTK_TREE_VIEW_COLUMN_FIXED);
    gtk_tree_view_set_fixed_height_mode(rows, TRUE);
}

void SelectAllRows(wxListBox& list, bool on) {
    GtkTreeSelection* selection = gtk_tree_view_get_selection(RowsOf(list));
    if (on) {
        gtk_tree_selection_select_all(selection);
    } else {
        gtk_tree_selection_unselect_all(selection);
    }
}

int CurrentRow(const wxListBox& list) {
    GtkTreePath* path = nullptr;
    gtk_tree_view_get_cursor(RowsOf(list), &path, nullptr);
    const int row = path ? gtk_tree_path_get_indices(path)[0] : -1;
    gtk_tree_path_free(path);
    return row;
}
