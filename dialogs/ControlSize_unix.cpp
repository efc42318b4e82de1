#include <gtk/gtk.h>
#include <wx/textctrl.h>

#include "dialogs/ControlSize.h"

// GTK is asked directly: wxWidgets' GetBestSize leaves the theme's padding out at the first call and adds it
// once more at every further one.
int HeightOf(const wxTextCtrl& box) {
    int least = 0, natural = 0;
    gtk_widget_get_preferred_height(box.GetHandle(), &least, &natural);
    return natural;
}

void FitLabel(wxStaticText&) {}  // GTK gives a label the room that it needs
