#include "print/frmPrint.h"

#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/listbox.h>
#include <wx/radiobut.h>
#include <wx/spinctrl.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

#include "dialogs/ControlNames.h"
#include "dialogs/Message.h"
#include "dialogs/Wait.h"

namespace {

constexpr int kSmallestMargin = 5;  // millimetres
constexpr int kLargestMargin = 80;

wxSpinCtrl* CreateNumber(wxWindow* parent, int smallest, int largest, int value) {
    return new wxSpinCtrl(parent, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, wxSP_ARROW_KEYS,
                          smallest, largest, value);
}

}  // namespace

frmPrint::frmPrint(const NoteStore& store, PrintSystem& printing, const PrinterSettings& settings,
                   const std::wstring& hint)
    : frmDialog(L"Drucken", L"ch3_print.html", true), printing_(printing), settings_(settings) {
    const int gap = FromDIP(kDialogGap);
    fraNotes = new NoteChoice(this, NoteChoice::NotesOf(store), {.caption = L"Notizauswahl"});
    static_cast<NoteChoiceControls&>(*this) = *fraNotes;

    auto* content = new wxBoxSizer(wxVERTICAL);
    content->Add(fraNotes, wxSizerFlags(1).Expand());
    content->AddSpacer(gap);
    auto* middle = new wxBoxSizer(wxHORIZONTAL);
    middle->Add(CreateMargins(), wxSizerFlags().Expand());
    middle->AddSpacer(gap);
    middle->Add(CreateFormatting(), wxSizerFlags(1).Expand());
    content->Add(middle, wxSizerFlags().Expand());
    content->AddSpacer(gap);
    content->Add(CreatePrinter(hint), wxSizerFlags().Expand());
    SetContent(content, CreateButtons(L"OK", L"A&bbrechen"));

    fraNotes->OnChange = [this] { cmdOK->Enable(fraNotes->AnyMarked()); };
    fraNotes->OnChange();
    UpdateFormatting();
    lstNotizen->SetFocus();
}

wxSizer* frmPrint::CreateMargins() {
    auto* frame = new wxStaticBoxSizer(wxVERTICAL, this, L"&Seitenränder in mm");
    Frame6 = frame->GetStaticBox();
    const int gap = FromDIP(kDialogGap);
    auto* fields = new wxFlexGridSizer(2, wxSize(gap, gap));
    const auto add = [&](const wchar_t* label, wxSpinCtrl*& box, wxSpinCtrl*& arrows, int value) {
        fields->Add(new wxStaticText(Frame6, wxID_ANY, label), wxSizerFlags().CentreVertical());
        box = arrows = CreateNumber(Frame6, kSmallestMargin, kLargestMargin, value);
        fields->Add(box);
    };
    add(L"&Links:", txtLinks, updwnLinks, 15);
    add(L"&Rechts:", txtRechts, updwnRechts, 15);
    add(L"&Oben:", txtOben, updwnOben, 20);
    add(L"&Unten:", txtUnten, updwnUnten, 20);
    frame->Add(fields, wxSizerFlags().Border(wxALL, gap));
    // wxWidgets leaves too little room for the caption.
    fields->SetMinSize({Frame6->GetTextExtent(L"Seitenränder in mm").x, -1});
    return frame;
}

wxSizer* frmPrint::CreateFormatting() {
    auto* frame = new wxStaticBoxSizer(wxVERTICAL, this, L"Notizformatierung beim Druck");
    fraNoteFormatting = frame->GetStaticBox();
    const int gap = FromDIP(kDialogGap);
    optSchriftgradNotiz = new wxRadioButton(fraNoteFormatting, wxID_ANY, L"Schriftgrad wie &Notiztext",
                                            wxDefaultPosition, wxDefaultSize, wxRB_GROUP);
    optSchriftgradUser = new wxRadioButton(fraNoteFormatting, wxID_ANY, L"Schriftgrad");
    txtDateSize = updwnSchriftgradUser =
        CreateNumber(fraNoteFormatting, kSmallestFontSize, kLargestFontSize, kDefaultFontSize);
    NameControl(*txtDateSize, L"Schriftgrad");
    chkFormatierung =
        new wxCheckBox(fraNoteFormatting, wxID_ANY, L"Notiz&formatierung beim Druck berücksichtigen");
    chkDatumZeit =
        new wxCheckBox(fraNoteFormatting, wxID_ANY, L"Erstellungsdatum und -zeit der Notizen drucken");
    optSchriftgradNotiz->SetValue(true);
    chkFormatierung->SetValue(true);
    chkDatumZeit->SetValue(true);
    optSchriftgradNotiz->Bind(wxEVT_RADIOBUTTON, [this](wxCommandEvent&) { UpdateFormatting(); });
    optSchriftgradUser->Bind(wxEVT_RADIOBUTTON, [this](wxCommandEvent&) { UpdateFormatting(); });
    chkDatumZeit->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { UpdateFormatting(); });

    frame->Add(optSchriftgradNotiz, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxTOP, gap));
    auto* own = new wxBoxSizer(wxHORIZONTAL);
    own->Add(optSchriftgradUser, wxSizerFlags().CentreVertical());
    own->AddSpacer(gap);
    own->Add(txtDateSize);
    frame->Add(own, wxSizerFlags().Border(wxALL, gap));
    frame->Add(chkFormatierung, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
    frame->Add(chkDatumZeit, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
    return frame;
}

wxSizer* frmPrint::CreatePrinter(const std::wstring& hint) {
    auto* frame = new wxStaticBoxSizer(wxVERTICAL, this, L"&Drucker");
    Frame1 = frame->GetStaticBox();
    const int gap = FromDIP(kDialogGap);
    lblDrucker = new wxStaticText(Frame1, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                                  wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_END);
    lblDrucker->SetLabelText(settings_.printer);
    cmdEinstellung = new wxButton(Frame1, wxID_ANY, L"&Einstellung...");
    cmdEinstellung->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { SetUpPrinter(); });
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(lblDrucker, wxSizerFlags(1).CentreVertical().Border(wxALL, gap));
    row->Add(cmdEinstellung, wxSizerFlags().Border(wxTOP | wxRIGHT | wxBOTTOM, gap));
    frame->Add(row, wxSizerFlags().Expand());
    if (!hint.empty()) {
        frame->Add(new wxStaticText(Frame1, wxID_ANY, hint),
                   wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
    }
    return frame;
}

void frmPrint::SetUpPrinter() {
    if (settingUp_) return;
    settingUp_ = true;
    const bool changed = printing_.SetUp(settings_);
    if (IsQuitting()) return;
    settingUp_ = false;
    if (!changed) return;
    wasSetUp_ = true;
    lblDrucker->SetLabelText(settings_.printer);
}

void frmPrint::UpdateFormatting() { txtDateSize->Enable(optSchriftgradUser->GetValue()); }

PrintRules frmPrint::Rules() const {
    PrintRules rules;
    rules.left = txtLinks->GetValue();
    rules.right = txtRechts->GetValue();
    rules.top = txtOben->GetValue();
    rules.bottom = txtUnten->GetValue();
    if (optSchriftgradUser->GetValue()) rules.size = txtDateSize->GetValue();
    rules.formatting = chkFormatierung->GetValue();
    rules.dates = chkDatumZeit->GetValue();
    return rules;
}

void frmPrint::Confirm() {
    if (settingUp_) return;
    if (!PageLayout::HasRoom(Rules(), settings_.paper)) {
        ShowMessage(L"Die Seitenränder lassen auf dem Papier keinen Platz für Text.", kCritical, L"Drucken");
        return;
    }
    frmDialog::Confirm();
}
