#pragma once
// What the dialogs for address book entries share: the three boxes of an entry and the questions that they
// may raise.

#include <wx/panel.h>

#include <functional>
#include <string>

#include "model/AddressBook.h"

class wxTextCtrl;

// A dialog with these boxes has them under their names, too.
struct EntryControls {
    wxTextCtrl* txtPCName = nullptr;
    wxTextCtrl* txtIP = nullptr;  // takes only what addresses are made of
    wxTextCtrl* txtComment = nullptr;
};

class EntryFields : public wxPanel, public EntryControls {
  public:
    explicit EntryFields(wxWindow* parent);

    clsAddressBookEntry Entry() const;
    void Entry(const clsAddressBookEntry& entry);
};

// Says that there is an entry of that name already.
void ShowDuplicateEntry(const std::wstring& pcName);

// Whether the address is to be taken: it leads to a computer, or the user wants it all the same. Runs events
// while the name is looked up. False also when abandoned() holds or the program quits.
bool AcceptAddress(const std::wstring& address, const std::function<bool()>& abandoned);
