#include "dialogs/Clipboard.h"

#include <wx/clipbrd.h>
#include <wx/textbuf.h>

bool CopyText(const std::wstring& text) {
    const wxClipboardLocker clipboard;
    if (!clipboard || !wxTheClipboard->SetData(new wxTextDataObject(wxTextBuffer::Translate(text))))
        return false;
    wxTheClipboard->Flush();  // Windows would forget it when the program ends
    return true;
}

std::optional<std::wstring> ClipboardText() {
    const wxClipboardLocker clipboard;
    wxTextDataObject text;
    if (!clipboard || !wxTheClipboard->IsSupported(wxDF_UNICODETEXT) || !wxTheClipboard->GetData(text))
        return std::nullopt;
    return text.GetText().ToStdWstring();
}
