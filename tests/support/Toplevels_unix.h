#pragma once
#include <gtk/gtk.h>

#include <vector>

// All windows of this program that GTK knows, also those that are not shown, in the order in which they were
// made.
inline std::vector<GtkWindow*> Toplevels() {
    std::vector<GtkWindow*> windows;
    GList* list = gtk_window_list_toplevels();
    for (GList* item = list; item; item = item->next) windows.push_back(GTK_WINDOW(item->data));
    g_list_free(list);
    return windows;
}
