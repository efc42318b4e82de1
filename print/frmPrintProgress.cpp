#include "print/frmPrintProgress.h"

#include <wx/button.h>
#include <wx/dcbuffer.h>
#include <wx/settings.h>
#include <wx/stattext.h>

#include <algorithm>

#include "dialogs/ControlNames.h"
#include "dialogs/Wait.h"

namespace {

using namespace std::chrono_literals;

// While pages are made, events run for so long after every so long.
constexpr auto kBetweenEvents = 80ms;
constexpr auto kForEvents = 15ms;

}  // namespace

frmPrintProgress::frmPrintProgress() : frmDialog(L"Drucken", L"ch3_print.html") {
    auto* content = new wxBoxSizer(wxVERTICAL);
    content->Add(new wxStaticText(this, wxID_ANY, L"Die Notizen werden gedruckt..."));
    content->AddSpacer(FromDIP(kDialogGap));
    picProgress = new wxWindow(this, wxID_ANY, wxDefaultPosition, FromDIP(wxSize(300, 20)));
    picProgress->SetCanFocus(false);
    picProgress->DisableFocusFromKeyboard();
    picProgress->SetBackgroundStyle(wxBG_STYLE_PAINT);
    picProgress->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { PaintBar(); });
    content->Add(picProgress, wxSizerFlags().Expand());
    SetContent(content, CreateButtons(wxString(), L"A&bbrechen"));
    NamePicture(*picProgress, PictureRole::ProgressBar, L"0 % gedruckt");
}

void frmPrintProgress::PaintBar() {
    wxAutoBufferedPaintDC dc(picProgress);
    const wxSize size = picProgress->GetClientSize();
    dc.SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_GRAYTEXT)));
    dc.SetBrush(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW)));
    dc.DrawRectangle(0, 0, size.x, size.y);
    dc.SetPen(*wxTRANSPARENT_PEN);
    dc.SetBrush(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT)));
    dc.DrawRectangle(1, 1, (size.x - 2) * value_ / 100, size.y - 2);
}

void frmPrintProgress::Value(int percent) {
    value_ = std::clamp(percent, 0, 100);
    NamePicture(*picProgress, PictureRole::ProgressBar, wxString::Format(L"%d %% gedruckt", value_));
    picProgress->Refresh();
    picProgress->Update();
    const auto now = std::chrono::steady_clock::now();
    if (now - eventsRan_ < kBetweenEvents && value_ < 100) return;
    WaitUntil([this] { return Cancelled(); }, kForEvents);
    eventsRan_ = std::chrono::steady_clock::now();
}
