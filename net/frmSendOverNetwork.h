#pragma once
// The dialog in which the user chooses notes and the computers that get them.

#include <string>
#include <vector>

#include "dialogs/frmDialog.h"
#include "notes/NoteChoice.h"

class wxStaticText;
class wxTextCtrl;

class frmSendOverNetwork : public frmDialog, public NoteChoiceControls {
  public:
    // The store must outlive the dialog. It saves what was changed in the address book from here.
    explicit frmSendOverNetwork(NoteStore& store);

    // Names or addresses of the computers, at least one once the dialog was confirmed.
    std::vector<std::wstring> Recipients() const;

    // The controls, each under its name.
    wxStaticText* Label1 = nullptr;
    wxTextCtrl* txtEmpfänger = nullptr;
    wxButton* cmdAdressbuch = nullptr;
    NoteChoice* Frame1 = nullptr;
    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;

  protected:
    // Asks before characters get lost.
    void Confirm() override;

  private:
    void OnAdressbuch();
    void Changed();

    NoteStore& store_;
};
