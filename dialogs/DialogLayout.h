#pragma once
// How controls are arranged in a dialog.

#include <wx/gdicmn.h>

class wxDialog;
class wxObject;
class wxSizer;
class wxWindow;

// Distance between controls, and between controls and the border of a dialog, in device-independent pixels.
constexpr int kDialogMargin = 12;
constexpr int kDialogGap = 6;

// The size of a box or a list that shows text of so many characters in so many lines, in the window's font.
wxSize RoomForText(const wxWindow& window, int characters, int lines);

// Whether it is a list, with columns or without.
bool IsList(const wxObject* control);

// Puts the content and the button row, which become the dialog's, into it with the margins that all dialogs
// have, and sizes it. All controls exist by then. A dialog with a border that can be dragged gets as its
// least size the one at which lists and text boxes show a few lines.
void LayOutDialog(wxDialog& dialog, wxSizer* content, wxSizer* buttons);
