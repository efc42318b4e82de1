#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>

#include "notes/NoteFont.h"
#include "notes/PropertiesLook.h"

void StyleCaption(wxCheckBox& box, const NoteLook& look) {
    wxFont font = box.GetFont();
    SetStyles(font, look);
    box.SetFont(font);
    box.InvalidateBestSize();
}

void PaintButton(wxRadioButton& button, const wxColour& face, const wxColour& ink) {
    button.SetBackgroundColour(face);
    button.SetForegroundColour(ink);
}

void PadText(wxTextCtrl& box, int pixels) { box.SetMargins(pixels); }
