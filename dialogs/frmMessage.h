#pragma once
// The message box: a text with a picture, and OK or Yes and No. A dialog like all others, so that quitting
// the program unwinds it like all others. Whoever has something to say calls ShowMessage.

#include "dialogs/frmDialog.h"

class frmMessage : public frmDialog {
  public:
    // flags: as ShowMessage takes them.
    frmMessage(const std::wstring& text, int flags, const wxString& title);

    using frmDialog::cmdAbbrechen;  // Yes and No of a question
    using frmDialog::cmdOK;
};
