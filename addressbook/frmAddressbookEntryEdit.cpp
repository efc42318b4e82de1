#include "addressbook/frmAddressbookEntryEdit.h"

#include <wx/button.h>
#include <wx/listbox.h>
#include <wx/textctrl.h>
#include <wx/weakref.h>

#include "dialogs/ControlNames.h"
#include "dialogs/Wait.h"

frmAddressbookEntryEdit::frmAddressbookEntryEdit()
    : frmDialog(L"Adressbucheinträge bearbeiten", L"ch4_networkaddressbook.html", true) {
    lstEdit = new wxListBox(this, wxID_ANY, wxDefaultPosition, RoomForText(*this, 24, 9));
    NameControl(*lstEdit, L"Einträge");
    fields_ = new EntryFields(this);
    static_cast<EntryControls&>(*this) = *fields_;
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    content->Add(lstEdit, wxSizerFlags(1).Expand());
    content->AddSpacer(FromDIP(kDialogMargin));
    content->Add(fields_, wxSizerFlags(1));
    SetContent(content, CreateButtons(L"", L"&Schließen"));
    cmdSchliessen = cmdAbbrechen;
    cmdSchliessen->SetDefault();

    lstEdit->Bind(wxEVT_LISTBOX, [this](wxCommandEvent&) { OnSelect(); });
    for (wxTextCtrl* box : {txtPCName, txtIP, txtComment}) {
        box->Bind(wxEVT_KILL_FOCUS, [this, box](wxFocusEvent& event) {
            event.Skip();
            // The focus is still on its way; a message would get in between.
            CallAfter([this, box] { OnLeave(box); });
        });
    }
    cmdSchliessen->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { OnClose(); });
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
        event.Veto();
        OnClose();
    });
}

int frmAddressbookEntryEdit::ShowModal(const std::vector<clsAddressBookEntry>& EntriesToEdit) {
    for (const clsAddressBookEntry& entry : EntriesToEdit) lstEdit->Append(entry.PCName());
    if (!EntriesToEdit.empty()) {
        lstEdit->SetSelection(0);
        Fill();
    }
    lstEdit->SetFocus();
    return frmDialog::ShowModal();
}

void frmAddressbookEntryEdit::OnLeave(wxTextCtrl* box) {
    // Another window may have taken the keyboard, but then the box was not left.
    if (State() != DialogState::Waiting || !IsActive() || FindFocus() == box) return;
    TakeOver();
}

void frmAddressbookEntryEdit::OnSelect() {
    const int chosen = lstEdit->GetSelection();
    if (chosen == row_) return;
    if (checking_ || !TakeOverAll()) {
        if (!IsQuitting()) lstEdit->SetSelection(row_);
        return;
    }
    lstEdit->SetSelection(chosen);
    Fill();
}

void frmAddressbookEntryEdit::OnClose() {
    // While an address is looked up, closing gives that up.
    if (checking_) TakeOverComment();
    if (checking_ || TakeOverAll()) End(DialogState::Cancel);
}

void frmAddressbookEntryEdit::Fill() {
    row_ = lstEdit->GetSelection();
    name_ = row_ < 0 ? L"" : lstEdit->GetString(static_cast<unsigned>(row_)).ToStdWstring();
    const clsAddressBookEntry* entry = GetAddressBookEntry(name_);
    fields_->Entry(entry ? *entry : clsAddressBookEntry());
}

// Takes over everything before the boxes go away. What was typed while the address was looked up differs from
// the entry only afterwards.
bool frmAddressbookEntryEdit::TakeOverAll() { return TakeOver() && TakeOver(); }

// Takes over what differs from the entry. False when something was refused; its box has the focus then.
bool frmAddressbookEntryEdit::TakeOver() {
    if (checking_) return false;
    if (!AddressBookEntryExists(name_) || row_ < 0) return true;
    checking_ = true;
    TakeOverComment();
    // The user may go on with the other boxes while the address is looked up.
    const std::wstring name = txtPCName->GetValue().ToStdWstring();
    const bool taken = TakeOverAddress() && TakeOverName(name);
    if (!IsQuitting()) checking_ = false;
    return taken;
}

void frmAddressbookEntryEdit::TakeOverComment() {
    if (clsAddressBookEntry* entry = GetAddressBookEntry(name_))
        entry->Comment(txtComment->GetValue().ToStdWstring());
}

bool frmAddressbookEntryEdit::TakeOverAddress() {
    const std::wstring address = txtIP->GetValue().ToStdWstring();
    if (address == GetAddressBookEntry(name_)->IP()) return true;
    // What is being checked has to stay as it is.
    txtIP->SetEditable(false);
    const bool accepted = AcceptAddress(address, [this] { return State() != DialogState::Waiting; });
    if (IsQuitting() || State() != DialogState::Waiting) return false;
    txtIP->SetEditable(true);
    if (!accepted) {
        Refuse(txtIP);
        return false;
    }
    if (clsAddressBookEntry* entry = GetAddressBookEntry(name_)) entry->IP(address);
    return true;
}

bool frmAddressbookEntryEdit::TakeOverName(const std::wstring& name) {
    const clsAddressBookEntry* old = GetAddressBookEntry(name_);
    if (!old || name == name_) return true;
    if (AddressBookEntryExists(name)) {
        ShowDuplicateEntry(name);
        if (!IsQuitting()) Refuse(txtPCName);
        return false;
    }
    clsAddressBookEntry entry = *old;
    RemoveAddressBookEntry(name_);
    entry.PCName(name);
    AddAddressBookEntry(entry);
    lstEdit->SetString(static_cast<unsigned>(row_), name);
    lstEdit->SetSelection(row_);
    name_ = name;
    return true;
}

void frmAddressbookEntryEdit::Refuse(wxTextCtrl* box) {
    box->SetFocus();
    box->SelectAll();
}
