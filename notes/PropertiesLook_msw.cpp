#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>

#include "notes/PropertiesLook.h"

void StyleCaption(wxCheckBox& box, CaptionLook look) {
    wxFont font = box.GetFont();
    switch (look) {
        case CaptionLook::Bold:
            font.MakeBold();
            break;
        case CaptionLook::Italic:
            font.MakeItalic();
            break;
        case CaptionLook::Underlined:
            font.MakeUnderlined();
            break;
    }
    box.SetFont(font);
    box.InvalidateBestSize();
}

void PaintButton(wxRadioButton& button, const wxColour& face, const wxColour& ink) {
    button.SetBackgroundColour(face);
    button.SetForegroundColour(ink);
}

void PadText(wxTextCtrl& box, int pixels) { box.SetMargins(pixels); }
