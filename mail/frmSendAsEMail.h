#pragma once
// The dialog that asks which notes go to whom by e-mail. Its caller reads the controls.

#include "dialogs/frmDialog.h"
#include "notes/NoteChoice.h"

class wxTextCtrl;

class frmSendAsEMail : public frmDialog, public NoteChoiceControls {
  public:
    // The store must outlive the dialog.
    explicit frmSendAsEMail(const NoteStore& store);

    // The controls, each under its name.
    wxTextCtrl* txtEmpfänger = nullptr;
    wxTextCtrl* txtBetreff = nullptr;
    NoteChoice* Frame1 = nullptr;
    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;

  protected:
    // Asks before characters get lost.
    void Confirm() override;

  private:
    const NoteStore& store_;
};
