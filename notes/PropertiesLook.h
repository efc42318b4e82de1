#pragma once
// Touches of the properties dialog that only the platform's own controls can give.

class wxCheckBox;
class wxTextCtrl;

// Underlines the caption of a check box.
void UnderlineCaption(wxCheckBox& box);

// Keeps the text of a multi-line box a little away from the box's border.
void PadText(wxTextCtrl& box, int pixels);
