#pragma once
// How large controls have to be for what they show, where wxWidgets does not tell it right.

class wxStaticText;
class wxTextCtrl;

// The height in pixels that a box of one line needs in the desktop's theme and font.
int HeightOf(const wxTextCtrl& box);

// Gives a label room for all of its text. LayOutDialog does so with all labels of a dialog; to be called
// again when the text of one has changed.
void FitLabel(wxStaticText& label);
