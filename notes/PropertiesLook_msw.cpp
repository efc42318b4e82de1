#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <string>

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

void PutCaret(wxTextCtrl& box, std::size_t characters) {
    // The control counts a line break as two.
    const std::wstring before = box.GetValue().ToStdWstring().substr(0, characters);
    const auto breaks = std::count(before.begin(), before.end(), L'\n');
    const auto position = static_cast<long>(before.size()) + static_cast<long>(breaks);
    box.SetInsertionPoint(position);
    box.ShowPosition(position);
}

void PadText(wxTextCtrl& box, int pixels) { box.SetMargins(pixels); }
