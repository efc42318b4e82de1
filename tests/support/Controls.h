#pragma once
// What people who see little or use no mouse get of a dialog, asked of the platform.

#include <wx/dialog.h>

#include <functional>
#include <string>
#include <vector>

#include "dialogs/DialogWindow.h"

class wxListBox;
class wxStaticText;
class wxTextCtrl;

// What a screen reader says: the control's name, or the label that it is told belongs to it.
std::string SpokenName(wxWindow& control);
// The kind of control that it announces, "unknown" when it knows none.
std::string SpokenRole(wxWindow& control);

// Types a key on the keyboard, which the active window gets, and lets it and what it puts off be handled.
void TypeKey(int key, int modifiers = wxMOD_NONE);

// Types a key in a control of the active window, which gets the focus first.
void PressKey(wxWindow& control, int key, int modifiers = wxMOD_NONE);

// Whether Alt and this key, pressed in the dialog, move the focus to the control.
bool KeyMovesTo(wxDialog& dialog, wchar_t key, wxWindow& control);

// Where the focus comes by the Tab key, from the first control on, once round.
std::vector<wxWindow*> TabStops(wxDialog& dialog, const std::vector<wxWindow*>& controls);

// Whether keys get to what is in the control rather than to a frame around it.
bool HasKeyboard(wxWindow& control);

// What a click on a row of a list does: this row alone is selected.
void Click(wxListBox& list, int row);

// What a row of a list with columns shows.
std::wstring CellText(wxWindow& list, int row, int column);

// Clicks the box of a row, or the heading of a column, of a list with boxes.
void ClickBox(wxWindow& list, int row);
void ClickHeading(wxWindow& list, int column);

// Whether Enter in the dialog means this button.
bool IsDefaultOf(wxDialog& dialog, wxWindow& button);

// Whether a label has room for all letters of its text as they are drawn.
bool ShowsAllOfText(const wxStaticText& label);

// The colour behind the characters of a box.
wxColour PaperBehindText(wxTextCtrl& box);

// A dialog that exists on one platform only.
struct NamedDialog {
    std::string name;
    std::function<DialogWindow*()> make;
};
std::vector<NamedDialog> DialogsOfPlatform();
