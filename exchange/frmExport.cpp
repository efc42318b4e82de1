#include "exchange/frmExport.h"

#include <wx/button.h>
#include <wx/statbox.h>
#include <wx/textctrl.h>

#include "base/ByteSource.h"
#include "base/FileName.h"
#include "dialogs/Message.h"
#include "dialogs/Wait.h"
#include "exchange/ExportPath.h"
#include "notes/LossQuestion.h"
#include "notes/NoteStore.h"

frmExport::frmExport(const NoteStore& store)
    : frmDialog(L"Exportieren", L"ch3_export.html", true), store_(store) {
    Frame1 = new NoteChoice(this, NoteChoice::NotesOf(store), {});
    static_cast<NoteChoiceControls&>(*this) = *Frame1;

    auto* content = new wxBoxSizer(wxVERTICAL);
    content->Add(Frame1, wxSizerFlags(1).Expand());
    content->AddSpacer(FromDIP(kDialogGap));
    content->Add(CreateFile(), wxSizerFlags().Expand());
    SetContent(content, CreateButtons(L"&OK", L"A&bbrechen"));

    Frame1->OnChange = [this] { UpdateOK(); };
    txtPfad->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { UpdateOK(); });
    UpdateOK();
    txtPfad->SetFocus();
}

wxSizer* frmExport::CreateFile() {
    auto* frame = new wxStaticBoxSizer(wxHORIZONTAL, this, L"Datei");
    Frame2 = frame->GetStaticBox();
    txtPfad = new wxTextCtrl(Frame2, wxID_ANY);
    cmdSearch = new wxButton(Frame2, wxID_ANY, L"Durchsuchen...");
    cmdSearch->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Search(); });
    const int gap = FromDIP(kDialogGap);
    frame->Add(txtPfad, wxSizerFlags(1).CentreVertical().Border(wxALL, gap));
    frame->Add(cmdSearch, wxSizerFlags().CentreVertical().Border(wxTOP | wxRIGHT | wxBOTTOM, gap));
    return frame;
}

std::vector<std::int32_t> frmExport::ChosenNotes() const { return Frame1->Marked(); }

std::wstring frmExport::Path() const { return txtPfad->GetValue().ToStdWstring(); }

void frmExport::UpdateOK() { cmdOK->Enable(!txtPfad->IsEmpty() && Frame1->AnyMarked()); }

void frmExport::Search() {
    if (asking_) return;
    asking_ = true;
    std::optional<std::wstring> chosen;
    for (bool again = true; again;) {
        chosen = ChooseFile(*this, dlgDatei);
        again = chosen && IsOnlyWriteProtected(FilePath(*chosen));
        if (again) {
            ShowMessage(
                L"Sie haben eine existierende Datei gewählt, welche als schreibgeschützt markiert ist.\r\n"
                L"Wählen Sie bitte einen anderen Dateinamen.",
                kCritical, L"Schreibgeschützte Datei");
        }
        if (IsQuitting()) return;
    }
    asking_ = false;
    if (chosen) txtPfad->SetValue(*chosen);
}

void frmExport::Confirm() {
    if (asking_) return;
    asking_ = true;
    // The dialog may be cancelled behind each of the questions.
    const auto open = [this] { return State() == DialogState::Waiting; };
    const bool confirmed =
        MayLoseCharacters(store_, ChosenNotes(), L"exportieren") && open() && MayOverwrite() && open();
    if (IsQuitting()) return;
    asking_ = false;
    if (confirmed) frmDialog::Confirm();
}

bool frmExport::MayOverwrite() const {
    return !IsFile(TypedPath(Path())) ||
           ShowMessage(L"Die Datei " + ShownFileName(Path()) +
                           L" existiert bereits.\r\nSoll sie überschrieben werden?",
                       kExclamation | kYesNo, L"Datei existiert bereits") == MessageAnswer::Yes;
}
