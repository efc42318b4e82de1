#pragma once
// The question at "Beenden" while something could not be saved.

#include <functional>
#include <string>

#include "dialogs/frmDialog.h"

class wxStaticText;

class frmUnsaved : public frmDialog {
  public:
    // reason: why it could not be saved, in whole sentences.
    explicit frmUnsaved(const std::wstring& reason);

    // What the buttons do; true ends the dialog, and with it the program. Abbrechen and Esc stay.
    std::function<bool(frmUnsaved& dialog)> OnRepeat;
    std::function<bool(frmUnsaved& dialog)> OnSaveToFile;

    // Shows another reason.
    void Reason(const std::wstring& reason);

    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;          // "Wiederholen"
    wxButton* cmdDatei = nullptr;    // "In Datei sichern…"
    wxButton* cmdBeenden = nullptr;  // "Ohne Speichern beenden"
    wxStaticText* lblReason = nullptr;

  private:
    void Confirm() override;
};
