#include "notes/NoteFont.h"

#include <map>

const wxFont& NoteFont(const NoteLook& look) {
    static std::map<NoteLook, wxFont> fonts;
    NoteLook key = look;
    key.size = DrawnSize(look);
    key.alignment = kAlignLeft;
    key.color = kYellow;
    wxFont& font = fonts[key];
    if (!font.IsOk()) {
        font = wxFont(wxFontInfo(key.size).FaceName(L"Arial"));
        SetStyles(font, look);
    }
    return font;
}

void SetStyles(wxFont& font, const NoteLook& look) {
    font.SetWeight(look.bold ? wxFONTWEIGHT_BOLD : wxFONTWEIGHT_NORMAL);
    font.SetStyle(look.italic ? wxFONTSTYLE_ITALIC : wxFONTSTYLE_NORMAL);
    font.SetUnderlined(look.underlined);
}
