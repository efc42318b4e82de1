#pragma once
// The dialog that edits address book entries in place. What was typed into a box is taken over when the box
// is left, when another entry is chosen, and when the dialog is closed.

#include <string>
#include <vector>

#include "addressbook/EntryFields.h"
#include "dialogs/frmDialog.h"

class wxListBox;

class frmAddressbookEntryEdit : public frmDialog, public EntryControls {
  public:
    frmAddressbookEntryEdit();

    // Shows the dialog for these entries.
    int ShowModal(const std::vector<clsAddressBookEntry>& EntriesToEdit);

    // The controls, each under its name.
    wxListBox* lstEdit = nullptr;
    wxButton* cmdSchliessen = nullptr;

  private:
    void OnLeave(wxTextCtrl* box);
    void OnSelect();
    void OnClose();
    void Fill();
    bool TakeOverAll();
    bool TakeOver();
    void TakeOverComment();
    bool TakeOverAddress();
    bool TakeOverName(const std::wstring& name);
    void Refuse(wxTextCtrl* box);

    EntryFields* fields_ = nullptr;
    int row_ = -1;           // of the entry that the boxes show
    std::wstring name_;      // its name
    bool checking_ = false;  // one of the boxes is being taken over
};
