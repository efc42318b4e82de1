#pragma once
// The list of the address book's entries: the place to keep them, and to pick recipients from them. Nothing
// is saved here; the next save of the notes writes the address book, too.

#include <string>
#include <vector>

#include "addressbook/EntryList.h"
#include "dialogs/frmDialog.h"
#include "model/AddressBook.h"

class frmAddressbook : public frmDialog {
  public:
    // selecting: with OK for the rows that are checked; else only with a button that closes the list.
    explicit frmAddressbook(bool selecting);

    // The entries of the checked rows, in row order.
    std::vector<clsAddressBookEntry> CheckedEntries() const;

    // The controls, each under its name. In the list, column 0 has the check box, the columns 1 to 3 have
    // name, address and comment.
    std::unique_ptr<EntryList> lvwEntries;
    wxButton* cmdNeu = nullptr;
    wxButton* cmdBearbeiten = nullptr;
    wxButton* cmdLöschen = nullptr;
    wxButton* cmdAlle = nullptr;
    wxButton* cmdKeine = nullptr;
    using frmDialog::cmdAbbrechen;
    using frmDialog::cmdOK;

  private:
    wxSizer* CreateColumnOfButtons();
    void WriteRow(int row, const clsAddressBookEntry& entry);
    void RefreshList();
    void SortBy(int column);
    void Sort();
    void CheckAll(bool on);
    void UpdateButtons();
    void OnNeu();
    void OnBearbeiten();
    void OnLöschen();

    int sortColumn_ = -1;  // none yet
    bool ascending_ = true;
};

// Opens the list and returns the entries of the checked rows when it was confirmed, else nothing. While it is
// open already, it comes to the front instead.
std::vector<clsAddressBookEntry> ShowAddressBook(bool selecting);
