#include <gtk/gtk.h>
#include <wx/toplevel.h>

#include "dialogs/Stacking.h"

void KeepAbove(wxTopLevelWindow& window, bool above) {
    gtk_window_set_keep_above(GTK_WINDOW(window.GetHandle()), above);
}

void PutInFront(const std::vector<wxTopLevelWindow*>& windows) {
    for (const wxTopLevelWindow* window : windows) {
        if (GdkWindow* native = gtk_widget_get_window(window->GetHandle())) gdk_window_raise(native);
    }
}

bool GivesKeyboardBack() { return false; }
