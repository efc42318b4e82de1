#pragma once
// A dialog with a help page. All dialogs but the message box are of this kind.

#include "dialogs/DialogWindow.h"

class frmDialog : public DialogWindow {
  protected:
    // helpPage: the page of the help folder that F1 opens. The rest as with DialogWindow.
    frmDialog(const wxString& caption, const std::wstring& helpPage, bool resizable = false);
    frmDialog(Alone, const wxString& caption, const std::wstring& helpPage, bool resizable = false);

    bool Help() override;

  private:
    std::wstring helpPage_;
};
