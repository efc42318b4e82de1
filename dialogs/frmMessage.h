#pragma once
// The message box: a text with a picture, and OK or Yes and No. A dialog like all others, so that quitting
// the program unwinds it like all others. Whoever has something to say calls ShowMessage.

#include "dialogs/DialogWindow.h"

class frmMessage : public DialogWindow {
  public:
    // flags: those of MessageFlags.h.
    frmMessage(const std::wstring& text, int flags, const wxString& title);

    // A box that nobody waits for: it goes when it is answered.
    static void Tell(const std::wstring& text, int flags, const wxString& title);

    using DialogWindow::cmdAbbrechen;  // Yes and No of a question
    using DialogWindow::cmdOK;

  private:
    frmMessage(Alone alone, const std::wstring& text, int flags, const wxString& title);
    void Fill(const std::wstring& text, int flags, const wxString& title);
};
