#pragma once
// The printer set-up: which printer, which paper, which way up. Windows has a dialog of its own for this.

#include "dialogs/frmDialog.h"
#include "print/Printers.h"

class wxChoice;
class wxListBox;
class wxRadioButton;

class frmPrinterSetup : public frmDialog {
  public:
    frmPrinterSetup(const PrinterList& printers, const PrinterSettings& settings);

    // What the controls say; of use only after OK, which needs a printer.
    PrinterSettings Settings() const;

    wxListBox* lstDrucker = nullptr;
    wxChoice* cboPapier = nullptr;
    wxRadioButton* optHochformat = nullptr;
    wxRadioButton* optQuerformat = nullptr;
    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;
};
