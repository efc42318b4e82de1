#include "dialogs/frmDialog.h"

#include "dialogs/Help.h"

frmDialog::frmDialog(const wxString& caption, const std::wstring& helpPage, bool resizable)
    : DialogWindow(caption, resizable), helpPage_(helpPage) {}

frmDialog::frmDialog(Alone alone, const wxString& caption, const std::wstring& helpPage, bool resizable)
    : DialogWindow(alone, caption, resizable), helpPage_(helpPage) {}

bool frmDialog::Help() {
    ShowHelp(helpPage_);
    return true;
}
