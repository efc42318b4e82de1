#pragma once
#include <wx/string.h>

#include <string_view>

// A note's text as text boxes hold it, with every line break (CR LF, CR, LF) as LF.
inline wxString BoxText(std::wstring_view text) {
    wxString lines(text.data(), text.size());
    lines.Replace(L"\r\n", L"\n");
    lines.Replace(L"\r", L"\n");
    return lines;
}
