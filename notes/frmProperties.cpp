#include "notes/frmProperties.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/spinctrl.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "dialogs/ControlNames.h"
#include "dialogs/Message.h"
#include "dialogs/Wait.h"
#include "notes/BoxText.h"
#include "notes/NoteFont.h"
#include "notes/NotePaint.h"
#include "notes/NoteWindow.h"
#include "notes/PropertiesLook.h"

namespace {

// The buttons show the pure tones; the last one deliberately a deeper blue than its notes have.
struct ColorButton {
    const wchar_t* caption;
    std::int32_t face;
};
constexpr ColorButton kColorButtons[] = {
    {L"gelb", 0x00FFFF}, {L"grün", 0x00FF00}, {L"rot", 0x0000FF}, {L"blau", 0xFF0000}};

}  // namespace

frmProperties::frmProperties(const wxString& caption) : frmDialog(caption, L"ch2_new.html", true) {
    auto* content = new wxBoxSizer(wxHORIZONTAL);
    content->Add(CreateBoxes(), wxSizerFlags(1).Expand());
    content->AddSpacer(FromDIP(kDialogMargin));
    auto* choices = new wxBoxSizer(wxVERTICAL);
    const auto group = wxSizerFlags().Expand().Border(wxBOTTOM, FromDIP(kDialogGap));
    choices->Add(CreateForms(), group);
    choices->Add(CreateColors(), group);
    choices->Add(CreateAlignments(), group);
    choices->Add(CreateSize(), group);
    content->Add(choices, wxSizerFlags().Expand());
    SetContent(content, CreateButtons(L"&OK", L"A&bbrechen"));

    UpdateAlignment();
    UpdateLook();
    cmdOK->Disable();
    txtMessage->SetFocus();
}

wxSizer* frmProperties::CreateBoxes() {
    const long alignments[] = {wxTE_LEFT, wxTE_RIGHT, wxTE_CENTRE};
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    for (int i = 0; i < 3; ++i) {
        auto* box = new wxTextCtrl(this, wxID_ANY, wxString(), wxDefaultPosition, RoomForText(*this, 42, 13),
                                   wxTE_MULTILINE | alignments[i]);
        box->SetForegroundColour(*wxBLACK);
        NameControl(*box, L"Text der Notiz");
        PadText(*box, FromDIP(kDialogGap));
        LimitInsertions(*box, kLongestStoredText, [this](std::size_t cut) {
            cut_ += cut;
            CallAfter([this] { TellOfCut(); });
        });
        box->Bind(wxEVT_TEXT, [this, box](wxCommandEvent&) { OnText(box); });
        box->Bind(wxEVT_KEY_DOWN, &frmProperties::OnBoxKey, this);
        if (i != kAlignLeft) box->Hide();
        sizer->Add(box, wxSizerFlags(1).Expand());
        boxes_[static_cast<std::size_t>(i)] = box;
    }
    txtMessage = boxes_[kAlignLeft];
    txtMessageRechts = boxes_[kAlignRight];
    txtMessageZentr = boxes_[kAlignCentre];
    return sizer;
}

wxSizer* frmProperties::CreateForms() {
    auto* sizer = new wxStaticBoxSizer(wxVERTICAL, this, L"Form");
    for (std::size_t i = 0; i < chkForm.size(); ++i) {
        chkForm[i] = new wxCheckBox(sizer->GetStaticBox(), wxID_ANY, kNoteStyles[i].caption);
        chkForm[i]->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { UpdateLook(); });
        sizer->Add(chkForm[i], wxSizerFlags().Border(wxALL, FromDIP(2)));
        NoteLook look;
        look.*kNoteStyles[i].flag = true;
        StyleCaption(*chkForm[i], look);
    }
    return sizer;
}

wxSizer* frmProperties::CreateColors() {
    auto* sizer = new wxStaticBoxSizer(wxVERTICAL, this, L"Farbe");
    auto* inner = new wxBoxSizer(wxVERTICAL);
    for (std::size_t i = 0; i < optFarbe.size(); ++i) {
        optFarbe[i] = new wxRadioButton(sizer->GetStaticBox(), wxID_ANY, kColorButtons[i].caption,
                                        wxDefaultPosition, wxDefaultSize, i == 0 ? wxRB_GROUP : 0);
        const wxColour face = ToColour(kColorButtons[i].face);
        PaintButton(*optFarbe[i], face, face.GetLuminance() > 0.2 ? *wxBLACK : *wxWHITE);
        optFarbe[i]->Bind(wxEVT_RADIOBUTTON, [this](wxCommandEvent&) { UpdateLook(); });
        inner->Add(optFarbe[i], wxSizerFlags().Expand().Border(wxALL, FromDIP(2)));
    }
    sizer->Add(inner, wxSizerFlags().Expand().Border(wxRIGHT | wxBOTTOM, FromDIP(4)));
    return sizer;
}

wxSizer* frmProperties::CreateAlignments() {
    auto* sizer = new wxStaticBoxSizer(wxVERTICAL, this, L"Ausrichtung");
    const wchar_t* const captions[] = {L"links", L"rechts", L"zentriert"};
    for (std::size_t i = 0; i < optAusrichtung.size(); ++i) {
        optAusrichtung[i] = new wxRadioButton(sizer->GetStaticBox(), wxID_ANY, captions[i], wxDefaultPosition,
                                              wxDefaultSize, i == 0 ? wxRB_GROUP : 0);
        optAusrichtung[i]->Bind(wxEVT_RADIOBUTTON, [this](wxCommandEvent&) { UpdateAlignment(); });
        sizer->Add(optAusrichtung[i], wxSizerFlags().Border(wxALL, FromDIP(2)));
    }
    return sizer;
}

wxSizer* frmProperties::CreateSize() {
    auto* sizer = new wxBoxSizer(wxHORIZONTAL);
    Label1 = new wxStaticText(this, wxID_ANY, L"Schriftgrad");
    sizer->Add(Label1, wxSizerFlags().CentreVertical());
    sizer->AddSpacer(FromDIP(kDialogGap));
    updwnSchriftgrad = new wxSpinCtrl(this, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                      wxSP_ARROW_KEYS, kSmallestFontSize, kLargestFontSize, kDefaultFontSize);
    updwnSchriftgrad->Bind(wxEVT_SPINCTRL, [this](wxSpinEvent&) { UpdateLook(); });
    updwnSchriftgrad->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { UpdateLook(); });
    sizer->Add(updwnSchriftgrad, wxSizerFlags(1));
    return sizer;
}

void frmProperties::Fill(const Note& note) {
    const wxString text = BoxText(note.text);
    filled_ = text.ToStdWstring();
    history_ = TextHistory(filled_);
    for (wxTextCtrl* box : boxes_) box->ChangeValue(text);
    cmdOK->Enable(!filled_.empty());

    const std::int32_t code = note.look.alignment;
    const std::size_t alignment = code == kAlignRight || code == kAlignCentre ? code : kAlignLeft;
    optAusrichtung[alignment]->SetValue(true);
    for (std::size_t i = 0; i < chkForm.size(); ++i) chkForm[i]->SetValue(note.look.*kNoteStyles[i].flag);
    updwnSchriftgrad->SetValue(DrawnSize(note.look));
    const auto color = std::find(kNoteColors.begin(), kNoteColors.end(), note.look.color);
    optFarbe[color == kNoteColors.end() ? 0 : static_cast<std::size_t>(color - kNoteColors.begin())]
        ->SetValue(true);
    UpdateAlignment();
    UpdateLook();
    boxes_[alignment]->SetFocus();
    boxes_[alignment]->SetInsertionPointEnd();
}

Note frmProperties::Written(Note note) const {
    note.text = WithCrLf(history_.Text());
    note.look = SelectedLook();
    return note;
}

bool frmProperties::TextChanged() const { return !history_.Text().empty() && history_.Text() != filled_; }

void frmProperties::OnText(wxTextCtrl* source) {
    if (updating_) return;
    updating_ = true;
    const std::wstring typed = source->GetValue().ToStdWstring();
    const std::wstring text = FitEdit(history_.Text(), typed, kLongestStoredText, &caret_);
    history_.Change(text);
    if (text != typed) {
        cut_ += typed.size() - text.size();
        // The control is still busy with what was pasted and must not lose its text under its hands.
        CallAfter([this, source] { MendBox(source); });
    }
    for (wxTextCtrl* box : boxes_) {
        if (box != source) box->ChangeValue(text);
    }
    cmdOK->Enable(!text.empty());
    UpdateLook();
    updating_ = false;
}

void frmProperties::MendBox(wxTextCtrl* box) {
    if (box->GetValue() != history_.Text()) {
        box->ChangeValue(history_.Text());
        PutCaret(*box, caret_);
        UpdateLook();
    }
    TellOfCut();
}

void frmProperties::TellOfCut() {
    if (std::exchange(telling_, true)) return;
    // More may be cut while the message is on the screen.
    while (const std::size_t cut = std::exchange(cut_, 0)) {
        ShowMessage(cut == 1 ? std::wstring(L"Die Notiz ist voll. Ein Zeichen wurde weggelassen.")
                             : L"Die Notiz ist voll. Die letzten " + std::to_wstring(cut) +
                                   L" Zeichen des eingefügten Textes wurden weggelassen.",
                    kExclamation, L"Text zu lang");
        if (IsQuitting()) return;
    }
    telling_ = false;
}

void frmProperties::OnBoxKey(wxKeyEvent& event) {
    const bool shift = event.GetModifiers() == (wxMOD_CONTROL | wxMOD_SHIFT);
    const bool control = event.GetModifiers() == wxMOD_CONTROL;
    const int key = event.GetKeyCode();
    const bool undo = control && key == 'Z';
    const bool redo = (shift && key == 'Z') || (control && key == 'Y');
    if (!undo && !redo) {
        event.Skip();
    } else if (const std::optional<std::size_t> caret = undo ? history_.Undo() : history_.Redo()) {
        ShowText(*caret);
    } else {
        wxBell();
    }
}

void frmProperties::ShowText(std::size_t caret) {
    for (wxTextCtrl* box : boxes_) {
        box->ChangeValue(history_.Text());
        PutCaret(*box, caret);
    }
    cmdOK->Enable(!history_.Text().empty());
    UpdateLook();
}

void frmProperties::UpdateLook() {
    const NoteLook look = SelectedLook();
    const wxFont& font = NoteFont(look);
    const wxColour paper = ToColour(DisplayColor(look.color));
    for (wxTextCtrl* box : boxes_) {
        box->SetFont(font);
        box->SetBackgroundColour(paper);
        // GTK gives the text a background of its own, which would stay as it was.
        const wxTextAttr style(*wxBLACK, paper, font);
        box->SetDefaultStyle(style);
        box->SetStyle(0, box->GetLastPosition(), style);
        box->Refresh();
    }
}

void frmProperties::UpdateAlignment() {
    for (std::size_t i = 0; i < boxes_.size(); ++i) boxes_[i]->Show(optAusrichtung[i]->GetValue());
    Layout();
}

NoteLook frmProperties::SelectedLook() const {
    NoteLook look;
    look.size = SelectedSize();
    for (std::size_t i = 0; i < chkForm.size(); ++i) look.*kNoteStyles[i].flag = chkForm[i]->GetValue();
    for (std::size_t i = 0; i < optAusrichtung.size(); ++i)
        if (optAusrichtung[i]->GetValue()) look.alignment = static_cast<std::int32_t>(i);
    for (std::size_t i = 0; i < optFarbe.size(); ++i)
        if (optFarbe[i]->GetValue()) look.color = kNoteColors[i];
    return look;
}

std::int32_t frmProperties::SelectedSize() const {
    long typed = 0;
    if (!updwnSchriftgrad->GetTextValue().ToLong(&typed)) return updwnSchriftgrad->GetValue();
    return static_cast<std::int32_t>(std::clamp<long>(typed, kSmallestFontSize, kLargestFontSize));
}
