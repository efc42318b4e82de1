#include <wx/textctrl.h>

#include "base/BoxHeight.h"

int HeightOf(const wxTextCtrl& box) { return box.GetBestSize().y; }
