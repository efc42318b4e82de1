#include <wx/textctrl.h>

#include "dialogs/BoxHeight.h"

int HeightOf(const wxTextCtrl& box) { return box.GetBestSize().y; }
