#pragma once
// The printer set-up: which printer, which paper, which way up.

#include "dialogs/frmDialog.h"
#include "print/PrintSystem.h"

class wxChoice;
class wxListBox;
class wxRadioButton;

class frmPrinterSetup : public frmDialog {
  public:
    frmPrinterSetup(const PrinterList& printers, const PrinterSettings& settings);

    // What the controls say.
    PrinterSettings Settings() const;

    wxListBox* lstDrucker = nullptr;
    wxChoice* cboPapier = nullptr;
    wxRadioButton* optHochformat = nullptr;
    wxRadioButton* optQuerformat = nullptr;
    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;
};
