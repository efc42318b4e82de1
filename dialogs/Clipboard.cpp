#include "dialogs/Clipboard.h"

#include <wx/clipbrd.h>
#include <wx/textbuf.h>

bool CopyText(const std::wstring& text) {
    const wxClipboardLocker clipboard;
    return !!clipboard && wxTheClipboard->SetData(new wxTextDataObject(wxTextBuffer::Translate(text)));
}
