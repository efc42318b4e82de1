#include "mail/frmSendAsEMail.h"

#include <wx/button.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "mail/MailCodePage.h"
#include "notes/LossQuestion.h"

frmSendAsEMail::frmSendAsEMail(const NoteStore& store)
    : frmDialog(L"Per E-Mail versenden", L"ch4_email.html", true), store_(store) {
    const int gap = FromDIP(kDialogGap);
    auto* fields = new wxFlexGridSizer(2, wxSize(gap, gap));
    fields->AddGrowableCol(1);
    const auto add = [&](wxTextCtrl*& box, const wchar_t* label) {
        // Alt with the letter behind a label's "&" leads to the control that is created next.
        fields->Add(new wxStaticText(this, wxID_ANY, label), wxSizerFlags().CentreVertical());
        box = new wxTextCtrl(this, wxID_ANY);
        fields->Add(box, wxSizerFlags().Expand());
    };
    add(txtEmpfänger, L"&Empfängeradresse:");
    add(txtBetreff, L"Be&treff:");

    Frame1 = new NoteChoice(this, NoteChoice::NotesOf(store),
                            {.caption = L"Notizenauswahl", .markedAtFirst = false});
    static_cast<NoteChoiceControls&>(*this) = *Frame1;

    auto* content = new wxBoxSizer(wxVERTICAL);
    content->Add(fields, wxSizerFlags().Expand());
    content->AddSpacer(gap);
    content->Add(Frame1, wxSizerFlags(1).Expand());
    SetContent(content, CreateButtons(L"&OK", L"A&bbrechen"));

    Frame1->OnChange = [this] { cmdOK->Enable(Frame1->AnyMarked()); };
    Frame1->OnChange();
    txtEmpfänger->SetFocus();
}

void frmSendAsEMail::Confirm() {
    if (!MailHasAllCharacters() && !MayLoseCharacters(store_, Frame1->Marked(), L"per E-Mail senden")) return;
    // It may have been cancelled behind the question.
    if (State() == DialogState::Waiting) frmDialog::Confirm();
}
