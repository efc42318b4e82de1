#include "net/frmSendOverNetwork.h"

#include <wx/button.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/weakref.h>

#include "addressbook/frmAddressbook.h"
#include "dialogs/Wait.h"
#include "notes/LossQuestion.h"
#include "notes/NoteStore.h"

frmSendOverNetwork::frmSendOverNetwork(NoteStore& store)
    : frmDialog(L"Notizen im Netzwerk versenden", L"ch4_network.html", true), store_(store) {
    auto* content = new wxBoxSizer(wxVERTICAL);
    const int gap = FromDIP(kDialogGap);
    Label1 = new wxStaticText(this, wxID_ANY, L"&Empfänger (Netzwerkname oder IP-Adresse)");
    content->Add(Label1, wxSizerFlags().Border(wxBOTTOM, gap));
    auto* recipient = new wxBoxSizer(wxHORIZONTAL);
    txtEmpfänger = new wxTextCtrl(this, wxID_ANY);
    recipient->Add(txtEmpfänger, wxSizerFlags(1).CentreVertical());
    recipient->AddSpacer(gap);
    cmdAdressbuch = new wxButton(this, wxID_ANY, L"A&dressbuch...");
    recipient->Add(cmdAdressbuch);
    content->Add(recipient, wxSizerFlags().Expand().Border(wxBOTTOM, FromDIP(kDialogMargin)));
    Frame1 = new NoteChoice(this, NoteChoice::NotesOf(store), {.marking = NoteChoice::CheckBoxes});
    static_cast<NoteChoiceControls&>(*this) = *Frame1;
    content->Add(Frame1, wxSizerFlags(1).Expand());
    SetContent(content, CreateButtons(L"&OK", L"Ab&brechen"));

    cmdAdressbuch->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { OnAdressbuch(); });
    txtEmpfänger->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { Changed(); });
    Frame1->OnChange = [this] { Changed(); };
    Changed();
    txtEmpfänger->SetFocus();
}

std::vector<std::wstring> frmSendOverNetwork::Recipients() const {
    std::vector<std::wstring> recipients;
    const std::wstring typed = txtEmpfänger->GetValue().ToStdWstring();
    for (std::size_t at = 0; at < typed.size();) {
        const std::size_t end = std::min(typed.find(L',', at), typed.size());
        const std::size_t first = typed.find_first_not_of(L" \t", at);
        if (first < end) {
            const std::size_t last = typed.find_last_not_of(L" \t", end - 1);
            recipients.push_back(typed.substr(first, last - first + 1));
        }
        at = end + 1;
    }
    return recipients;
}

void frmSendOverNetwork::OnAdressbuch() {
    // The button leads to a dialog of its own, during which this one may come to its end.
    const wxWeakRef<frmSendOverNetwork> alive(this);
    NoteStore& store = store_;
    const std::vector<clsAddressBookEntry> chosen = ShowAddressBook(true);
    if (IsQuitting()) return;
    store.SaveNotes();
    if (!alive || chosen.empty()) return;
    wxString recipients;
    for (const clsAddressBookEntry& entry : chosen) {
        if (!recipients.empty()) recipients += L", ";
        recipients += entry.IP();
    }
    txtEmpfänger->SetValue(recipients);
}

void frmSendOverNetwork::Confirm() {
    if (!MayLoseCharacters(store_, Frame1->Marked(), L"über das Netzwerk senden")) return;
    // It may have been cancelled behind the question.
    if (State() == DialogState::Waiting) frmDialog::Confirm();
}

void frmSendOverNetwork::Changed() { cmdOK->Enable(!Recipients().empty() && Frame1->AnyMarked()); }
