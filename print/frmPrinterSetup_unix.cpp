#include "print/frmPrinterSetup_unix.h"

#include <wx/button.h>
#include <wx/choice.h>
#include <wx/listbox.h>
#include <wx/radiobut.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

#include <algorithm>

#include "print/PaperFormats_unix.h"

frmPrinterSetup::frmPrinterSetup(const PrinterList& printers, const PrinterSettings& settings)
    : frmDialog(L"Drucker einrichten", L"ch3_print.html") {
    const int gap = FromDIP(kDialogGap);
    auto* content = new wxBoxSizer(wxVERTICAL);

    auto* printerFrame = new wxStaticBoxSizer(wxVERTICAL, this, L"&Drucker");
    lstDrucker = new wxListBox(printerFrame->GetStaticBox(), wxID_ANY, wxDefaultPosition,
                               RoomForText(*this, 42, 7), 0, nullptr, wxLB_SINGLE);
    for (const std::wstring& name : printers.names) lstDrucker->Append(name);
    const auto chosen = std::find(printers.names.begin(), printers.names.end(), settings.printer);
    if (chosen != printers.names.end()) {
        lstDrucker->SetSelection(static_cast<int>(chosen - printers.names.begin()));
    }
    lstDrucker->Bind(wxEVT_LISTBOX,
                     [this](wxCommandEvent&) { cmdOK->Enable(lstDrucker->GetSelection() != wxNOT_FOUND); });
    lstDrucker->Bind(wxEVT_LISTBOX_DCLICK, [this](wxCommandEvent&) { Confirm(); });
    printerFrame->Add(lstDrucker, wxSizerFlags(1).Expand().Border(wxALL, gap));
    if (!printers.hint.empty()) {
        printerFrame->Add(new wxStaticText(printerFrame->GetStaticBox(), wxID_ANY, printers.hint),
                          wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
    }
    content->Add(printerFrame, wxSizerFlags(1).Expand());
    content->AddSpacer(gap);

    auto* paperFrame = new wxStaticBoxSizer(wxVERTICAL, this, L"&Papier");
    wxWindow* box = paperFrame->GetStaticBox();
    cboPapier = new wxChoice(box, wxID_ANY);
    for (const PaperFormat& format : kPaperFormats) cboPapier->Append(format.caption);
    cboPapier->SetSelection(static_cast<int>(&FormatOf(settings.paper) - kPaperFormats.data()));
    paperFrame->Add(cboPapier, wxSizerFlags().Expand().Border(wxALL, gap));
    auto* ways = new wxBoxSizer(wxHORIZONTAL);
    optHochformat =
        new wxRadioButton(box, wxID_ANY, L"&Hochformat", wxDefaultPosition, wxDefaultSize, wxRB_GROUP);
    optQuerformat = new wxRadioButton(box, wxID_ANY, L"&Querformat");
    (IsLandscape(settings.paper) ? optQuerformat : optHochformat)->SetValue(true);
    ways->Add(optHochformat);
    ways->AddSpacer(2 * gap);
    ways->Add(optQuerformat);
    paperFrame->Add(ways, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
    content->Add(paperFrame, wxSizerFlags().Expand());

    SetContent(content, CreateButtons(L"&OK", L"A&bbrechen"));
    cmdOK->Enable(lstDrucker->GetSelection() != wxNOT_FOUND);
    lstDrucker->SetFocus();
}

PrinterSettings frmPrinterSetup::Settings() const {
    PrinterSettings settings;
    settings.printer = lstDrucker->GetStringSelection().ToStdWstring();
    settings.paper = kPaperFormats[static_cast<std::size_t>(cboPapier->GetSelection())].size;
    if (optQuerformat->GetValue()) std::swap(settings.paper.width, settings.paper.height);
    return settings;
}
