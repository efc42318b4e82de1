#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "dialogs/ControlSize.h"

int HeightOf(const wxTextCtrl& box) { return box.GetBestSize().y; }

// A label that is no wider than its text was measured may lose the end of it: Windows breaks it into lines
// again to draw it, and Wine draws some letters of small fonts wider than it measures them.
void FitLabel(wxStaticText& label) {
    if (label.HasFlag(wxST_NO_AUTORESIZE)) return;
    const wxSize measured = label.GetBestSize();
    label.SetInitialSize({measured.x + 1 + measured.x / 64, measured.y});
}
