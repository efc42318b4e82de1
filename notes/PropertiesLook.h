#pragma once
// Touches of the properties dialog that only the platform's own controls can give.

#include <cstddef>
#include <functional>

struct NoteLook;
class wxCheckBox;
class wxColour;
class wxRadioButton;
class wxTextCtrl;

// Shows the caption of a check box in the styles of a look.
void StyleCaption(wxCheckBox& box, const NoteLook& look);

// Paints an option button in a colour, its caption in another one that is readable on it. The circle stays
// visible on either.
void PaintButton(wxRadioButton& button, const wxColour& face, const wxColour& ink);

// Puts the caret of a multi-line box behind so many characters of its value, where a line break is one, and
// scrolls to it.
void PutCaret(wxTextCtrl& box, std::size_t characters);

// Keeps the text of a multi-line box a little away from the box's border.
void PadText(wxTextCtrl& box, int pixels);

// What the user puts in at once, by a paste or a drop, is cut behind as many characters as the box holds
// already and `more`: laying out a line of megabytes, only to throw it away again, would take GTK minutes.
// `cut` gets the number of the characters left out before the box tells of its change. What the program puts
// in stays whole.
void LimitInsertions(wxTextCtrl& box, std::size_t more, std::function<void(std::size_t)> cut);
