#pragma once
// wxWidgets wraps the widgets of its controls in others.

#include <gtk/gtk.h>

// The first widget at or below this one that passes; null for none.
template <class Condition>
GtkWidget* FindWidget(GtkWidget* widget, const Condition& passes) {
    if (passes(widget)) return widget;
    if (!GTK_IS_CONTAINER(widget)) return nullptr;
    GtkWidget* found = nullptr;
    GList* children = gtk_container_get_children(GTK_CONTAINER(widget));
    for (GList* each = children; each && !found; each = each->next) {
        found = FindWidget(GTK_WIDGET(each->data), passes);
    }
    g_list_free(children);
    return found;
}

// The first one of a type.
inline GtkWidget* FindWidget(GtkWidget* widget, GType type) {
    return FindWidget(widget, [type](GtkWidget* each) { return G_TYPE_CHECK_INSTANCE_TYPE(each, type); });
}
