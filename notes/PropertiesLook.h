#pragma once
// Touches of the properties dialog that only the platform's own controls can give.

class wxCheckBox;
class wxTextCtrl;

// Shows the caption of a check box in the look that the box stands for.
enum class CaptionLook { Underlined, Bold, Italic };
void StyleCaption(wxCheckBox& box, CaptionLook look);

// Keeps the text of a multi-line box a little away from the box's border.
void PadText(wxTextCtrl& box, int pixels);
