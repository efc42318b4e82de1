#include <gtk/gtk.h>
#include <wx/textctrl.h>

#include "dialogs/BoxHeight.h"

// The toolkit's own answer leaves the theme's padding out at first and adds it again with every question.
int HeightOf(const wxTextCtrl& box) {
    int least = 0, natural = 0;
    gtk_widget_get_preferred_height(box.GetHandle(), &least, &natural);
    return natural;
}
