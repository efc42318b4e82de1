#pragma once
// The dialog in which the user chooses notes and the file that they go to. It changes nothing; the caller
// reads its choice.

#include <cstdint>
#include <vector>

#include "dialogs/frmDialog.h"
#include "exchange/FileDialog.h"
#include "notes/NoteChoice.h"

class wxStaticBox;
class wxTextCtrl;

class frmExport : public frmDialog, public NoteChoiceControls {
  public:
    // The store must outlive the dialog.
    explicit frmExport(const NoteStore& store);

    // The NoteKeys of the chosen notes in list order. A note may be gone by now.
    std::vector<std::int32_t> ChosenNotes() const;
    // The file as it was typed or chosen.
    std::wstring Path() const;

    // The controls, each under its name.
    NoteChoice* Frame1 = nullptr;
    wxStaticBox* Frame2 = nullptr;
    wxTextCtrl* txtPfad = nullptr;
    wxButton* cmdSearch = nullptr;
    FileDialogOptions dlgDatei{.DialogTitle = L"Kivora-Exportdatei speichern...", .save = true};
    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;

  protected:
    // Asks before characters get lost and before an existing file is overwritten.
    void Confirm() override;

  private:
    wxSizer* CreateFile();
    void UpdateOK();
    void Search();
    bool MayOverwrite() const;

    const NoteStore& store_;
    bool asking_ = false;  // a question or the file dialog is open
};
