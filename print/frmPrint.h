#pragma once
// The dialog that asks which notes to print, on which printer and how. Its caller reads the answers.

#include <cstdint>
#include <string>
#include <vector>

#include "dialogs/frmDialog.h"
#include "notes/NoteChoice.h"
#include "print/PrintSystem.h"

class wxCheckBox;
class wxRadioButton;
class wxSpinCtrl;
class wxStaticBox;
class wxStaticText;

class frmPrint : public frmDialog, public NoteChoiceControls {
  public:
    // Store and printing have to outlive the dialog. settings: the current printer and its paper; hint: what
    // the user should know of the choice of printers, may be empty.
    frmPrint(const NoteStore& store, PrintSystem& printing, const PrinterSettings& settings,
             const std::wstring& hint);

    PrintRules Rules() const;
    const PrinterSettings& Settings() const { return settings_; }
    bool WasSetUp() const { return wasSetUp_; }  // whether the user has changed the settings

    // The controls, each under its name. A text box and its up-down are one wxSpinCtrl, which brings what is
    // typed into its range when it loses the keyboard.
    NoteChoice* fraNotes = nullptr;
    wxStaticBox* Frame6 = nullptr;
    wxSpinCtrl *txtLinks = nullptr, *updwnLinks = nullptr;
    wxSpinCtrl *txtRechts = nullptr, *updwnRechts = nullptr;
    wxSpinCtrl *txtOben = nullptr, *updwnOben = nullptr;
    wxSpinCtrl *txtUnten = nullptr, *updwnUnten = nullptr;
    wxStaticBox* fraNoteFormatting = nullptr;
    wxRadioButton *optSchriftgradNotiz = nullptr, *optSchriftgradUser = nullptr;
    wxSpinCtrl *txtDateSize = nullptr, *updwnSchriftgradUser = nullptr;
    wxCheckBox *chkFormatierung = nullptr, *chkDatumZeit = nullptr;
    wxStaticBox* Frame1 = nullptr;
    wxStaticText* lblDrucker = nullptr;
    wxButton* cmdEinstellung = nullptr;
    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;

  protected:
    void Confirm() override;

  private:
    wxSizer* CreateMargins();
    wxSizer* CreateFormatting();
    wxSizer* CreatePrinter(const std::wstring& hint);
    void SetUpPrinter();
    void UpdateFormatting();

    PrintSystem& printing_;
    PrinterSettings settings_;
    bool settingUp_ = false, wasSetUp_ = false;
};
