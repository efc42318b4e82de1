#include "addressbook/frmAddressbookEntryNew.h"

#include <wx/button.h>
#include <wx/textctrl.h>

#include "dialogs/Wait.h"

frmAddressbookEntryNew::frmAddressbookEntryNew()
    : frmDialog(L"Neuer Adressbucheintrag", L"ch4_networkaddressbook.html"), fields_(new EntryFields(this)) {
    static_cast<EntryControls&>(*this) = *fields_;
    auto* content = new wxBoxSizer(wxVERTICAL);
    content->Add(fields_, wxSizerFlags().Expand());
    SetContent(content, CreateButtons(L"&OK", L"Ab&brechen"));
    for (wxTextCtrl* box : {txtPCName, txtIP}) {
        box->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { UpdateButtons(); });
    }
    UpdateButtons();
    txtPCName->SetFocus();
}

void frmAddressbookEntryNew::UpdateButtons() {
    cmdOK->Enable(!checking_ && !txtPCName->IsEmpty() && !txtIP->IsEmpty());
}

void frmAddressbookEntryNew::Confirm() {
    const clsAddressBookEntry entry = Entry();
    if (AddressBookEntryExists(entry.PCName())) {
        ShowDuplicateEntry(entry.PCName());
        return;
    }
    // What is being checked has to stay as it is.
    checking_ = true;
    fields_->Disable();
    UpdateButtons();
    const bool accepted = AcceptAddress(entry.IP(), [this] { return State() != DialogState::Waiting; });
    if (IsQuitting() || State() != DialogState::Waiting) return;
    checking_ = false;
    fields_->Enable();
    UpdateButtons();
    if (accepted)
        End(DialogState::Ok);
    else
        txtIP->SetFocus();
}
