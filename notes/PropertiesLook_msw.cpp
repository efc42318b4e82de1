#include <wx/checkbox.h>
#include <wx/clipbrd.h>
#include <wx/radiobut.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <string>
#include <utility>

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

void LimitInsertions(wxTextCtrl& box, std::size_t more, std::function<void(std::size_t)> cut) {
    box.Bind(wxEVT_TEXT_PASTE, [&box, more, cut = std::move(cut)](wxClipboardTextEvent& event) {
        event.Skip();
        wxTextDataObject pasted;
        const wxClipboardLocker open;
        if (!open || !wxTheClipboard->GetData(pasted)) return;
        wxString text = pasted.GetText();
        text.Replace(L"\r\n", L"\n");
        const std::size_t most = static_cast<std::size_t>(box.GetLastPosition()) + more;
        if (text.length() <= most) return;
        event.Skip(false);
        cut(text.length() - most);
        box.WriteText(text.substr(0, most));
    });
}
