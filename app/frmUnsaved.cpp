#include "app/frmUnsaved.h"

#include <wx/button.h>
#include <wx/statbmp.h>
#include <wx/stattext.h>

#include "dialogs/ControlNames.h"
#include "dialogs/ControlSize.h"
#include "res/Resources.h"

namespace {
constexpr int kTextCharacters = 70;
}

frmUnsaved::frmUnsaved(const std::wstring& reason) : frmDialog(L"Nicht gespeichert", L"index.html") {
    AnnounceAs(*this, DialogRole::Alert);
    auto* picture = new wxStaticBitmap(this, wxID_ANY, LoadPicture(kWarningPicture));
    NameControl(*picture, L"Warnung");
    auto* lost = new wxStaticText(this, wxID_ANY,
                                  L"Ihre letzten Änderungen sind nicht gespeichert. Wenn Kivora jetzt endet, "
                                  L"gehen sie verloren.");
    lost->Wrap(RoomForText(*this, kTextCharacters, 1).x);
    lblReason = new wxStaticText(this, wxID_ANY, wxString());
    auto* texts = new wxBoxSizer(wxVERTICAL);
    texts->Add(lost, wxSizerFlags().Border(wxBOTTOM, FromDIP(kDialogMargin)));
    texts->Add(lblReason);
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    content->Add(picture, wxSizerFlags().Top());
    content->AddSpacer(FromDIP(kDialogMargin));
    content->Add(texts, wxSizerFlags(1));

    wxSizer* const buttons = CreateButtons(L"&Wiederholen", L"&Abbrechen");
    cmdDatei = new wxButton(this, wxID_ANY, L"In &Datei sichern…");
    cmdBeenden = new wxButton(this, wxID_ANY, L"&Ohne Speichern beenden");
    cmdDatei->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) {
        if (OnSaveToFile && OnSaveToFile(*this)) End(DialogState::Ok);
    });
    cmdBeenden->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { End(DialogState::Ok); });
    // Between the two that every dialog has.
    std::size_t place = buttons->GetItemCount() - 1;
    for (wxButton* const button : {cmdDatei, cmdBeenden}) {
        button->MoveBeforeInTabOrder(cmdAbbrechen);
        buttons->Insert(place++, button);
        buttons->InsertSpacer(place++, FromDIP(kDialogGap));
    }
    Reason(reason);
    SetContent(content, buttons);
    cmdOK->SetFocus();
}

void frmUnsaved::Reason(const std::wstring& reason) {
    lblReason->SetLabelText(reason);
    lblReason->Wrap(RoomForText(*this, kTextCharacters, 1).x);
    FitLabel(*lblReason);
    if (GetSizer()) GetSizer()->SetSizeHints(this);
}

void frmUnsaved::Confirm() {
    if (OnRepeat && OnRepeat(*this)) End(DialogState::Ok);
}
