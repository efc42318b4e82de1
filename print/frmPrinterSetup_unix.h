#pragma once
// The printer set-up: which printer, which paper, which way up. Windows has a dialog of its own for this.

#include <functional>

#include "dialogs/frmDialog.h"
#include "print/Printers.h"

class wxChoice;
class wxListBox;
class wxRadioButton;

class frmPrinterSetup : public frmDialog {
  public:
    // paperOf: the paper that a printer of the list is set to by itself.
    frmPrinterSetup(const PrinterList& printers, const PrinterSettings& settings,
                    std::function<PaperSize(const std::wstring& printer)> paperOf);

    // What the controls say; of use only after OK, which needs a printer.
    PrinterSettings Settings() const;

    wxListBox* lstDrucker = nullptr;
    wxChoice* cboPapier = nullptr;
    wxRadioButton* optHochformat = nullptr;
    wxRadioButton* optQuerformat = nullptr;
    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;

  private:
    wxSizer* CreatePrinters(const PrinterList& printers, const std::wstring& chosen);
    wxSizer* CreatePaper();
    void OnPrinter();
    void ShowPaper(const PaperSize& paper);

    const std::function<PaperSize(const std::wstring& printer)> paperOf_;
    PaperSize ownPaper_;  // upright; that of the last row where it is none of the formats
};
