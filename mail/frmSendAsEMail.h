#pragma once
// The dialog that asks which notes go to whom by e-mail. Its caller reads the controls.

#include "dialogs/frmDialog.h"

class NoteChoice;
class NoteStore;
class wxButton;
class wxListBox;
class wxTextCtrl;

class frmSendAsEMail : public frmDialog {
  public:
    // The store must outlive the dialog.
    explicit frmSendAsEMail(const NoteStore& store);

    // The controls, each under its name.
    wxTextCtrl* txtEmpfänger = nullptr;
    wxTextCtrl* txtBetreff = nullptr;
    NoteChoice* Frame1 = nullptr;
    wxListBox* lstNotizen = nullptr;
    wxButton* cmdAlle = nullptr;
    wxButton* cmdKeine = nullptr;
    wxButton* cmdRefresh = nullptr;
    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;

  protected:
    // Asks before characters get lost.
    void Confirm() override;

  private:
    const NoteStore& store_;
};
