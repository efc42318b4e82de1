#include <gtk/gtk.h>
#include <wx/listbox.h>

#include "tests/support/Dialogs.h"

void Click(wxListBox& list, int row) {
    auto* rows = GTK_TREE_VIEW(gtk_bin_get_child(GTK_BIN(list.GetHandle())));
    GtkTreePath* path = gtk_tree_path_new_from_indices(row, -1);
    gtk_tree_view_set_cursor(rows, path, nullptr, FALSE);
    gtk_tree_path_free(path);
}
