#include "print/frmPrinterSetup_unix.h"

#include <wx/button.h>
#include <wx/choice.h>
#include <wx/listbox.h>
#include <wx/radiobut.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

#include <cmath>
#include <utility>

#include "print/PaperFormats_unix.h"

namespace {

std::wstring InMillimetres(const PaperSize& paper) {
    return std::to_wstring(std::lround(paper.width)) + L" × " + std::to_wstring(std::lround(paper.height)) +
           L" mm";
}

}  // namespace

frmPrinterSetup::frmPrinterSetup(const PrinterList& printers, const PrinterSettings& settings,
                                 std::function<PaperSize(const std::wstring& printer)> paperOf)
    : frmDialog(L"Drucker einrichten", L"ch3_print.html"), paperOf_(std::move(paperOf)) {
    auto* content = new wxBoxSizer(wxVERTICAL);
    content->Add(CreatePrinters(printers, settings.printer), wxSizerFlags(1).Expand());
    content->AddSpacer(FromDIP(kDialogGap));
    content->Add(CreatePaper(), wxSizerFlags().Expand());
    ShowPaper(settings.paper);
    SetContent(content, CreateButtons(L"&OK", L"A&bbrechen"));
    cmdOK->Enable(lstDrucker->GetSelection() != wxNOT_FOUND);
    lstDrucker->SetFocus();
}

wxSizer* frmPrinterSetup::CreatePrinters(const PrinterList& printers, const std::wstring& chosen) {
    const int gap = FromDIP(kDialogGap);
    auto* frame = new wxStaticBoxSizer(wxVERTICAL, this, L"&Drucker");
    wxWindow* box = frame->GetStaticBox();
    lstDrucker =
        new wxListBox(box, wxID_ANY, wxDefaultPosition, RoomForText(*this, 42, 7), 0, nullptr, wxLB_SINGLE);
    for (const std::wstring& name : printers.names) lstDrucker->Append(name);
    lstDrucker->SetStringSelection(chosen);
    lstDrucker->Bind(wxEVT_LISTBOX, [this](wxCommandEvent&) { OnPrinter(); });
    lstDrucker->Bind(wxEVT_LISTBOX_DCLICK, [this](wxCommandEvent&) { Confirm(); });
    frame->Add(lstDrucker, wxSizerFlags(1).Expand().Border(wxALL, gap));
    if (!printers.hint.empty()) {
        frame->Add(new wxStaticText(box, wxID_ANY, printers.hint),
                   wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
    }
    return frame;
}

wxSizer* frmPrinterSetup::CreatePaper() {
    const int gap = FromDIP(kDialogGap);
    auto* frame = new wxStaticBoxSizer(wxVERTICAL, this, L"&Papier");
    wxWindow* box = frame->GetStaticBox();
    cboPapier = new wxChoice(box, wxID_ANY);
    frame->Add(cboPapier, wxSizerFlags().Expand().Border(wxALL, gap));
    auto* ways = new wxBoxSizer(wxHORIZONTAL);
    optHochformat =
        new wxRadioButton(box, wxID_ANY, L"&Hochformat", wxDefaultPosition, wxDefaultSize, wxRB_GROUP);
    optQuerformat = new wxRadioButton(box, wxID_ANY, L"&Querformat");
    ways->Add(optHochformat);
    ways->AddSpacer(2 * gap);
    ways->Add(optQuerformat);
    frame->Add(ways, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
    return frame;
}

void frmPrinterSetup::OnPrinter() {
    const bool any = lstDrucker->GetSelection() != wxNOT_FOUND;
    cmdOK->Enable(any);
    if (any) ShowPaper(paperOf_(lstDrucker->GetStringSelection().ToStdWstring()));
}

void frmPrinterSetup::ShowPaper(const PaperSize& paper) {
    ownPaper_ = paper;
    if (IsLandscape(paper)) std::swap(ownPaper_.width, ownPaper_.height);
    cboPapier->Clear();
    for (const PaperFormat& format : kPaperFormats) cboPapier->Append(format.caption);
    const PaperFormat* const format = FormatOf(paper);
    if (!format) cboPapier->Append(L"Papier des Druckers (" + InMillimetres(ownPaper_) + L")");
    cboPapier->SetSelection(static_cast<int>(format ? format - kPaperFormats.data() : kPaperFormats.size()));
    (IsLandscape(paper) ? optQuerformat : optHochformat)->SetValue(true);
}

PrinterSettings frmPrinterSetup::Settings() const {
    PrinterSettings settings;
    settings.printer = lstDrucker->GetStringSelection().ToStdWstring();
    const auto row = static_cast<std::size_t>(cboPapier->GetSelection());
    settings.paper = row < kPaperFormats.size() ? kPaperFormats[row].size : ownPaper_;
    if (optQuerformat->GetValue()) std::swap(settings.paper.width, settings.paper.height);
    return settings;
}
