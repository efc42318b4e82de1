#include "net/frmSendOverNetworkProgress.h"

#include <wx/button.h>
#include <wx/dcclient.h>
#include <wx/gauge.h>
#include <wx/settings.h>
#include <wx/stattext.h>

#include <algorithm>
#include <utility>

#include "base/twips.h"
#include "dialogs/ControlNames.h"
#include "net/clsOutgoing.h"

namespace {

constexpr int kRow = 480, kFirstRow = 150;            // twips
constexpr int kArrowSize = 240, kLeft = 150;          // twips
constexpr int kLabelLeft = kLeft + kArrowSize + 180;  // twips
constexpr int kWidth = 6900, kHeight = 3 * kRow;      // twips
constexpr int kLeastBar = 1500;                       // twips
constexpr int kUpdateMilliseconds = 200;

// A triangle that points to the right.
class Arrow : public wxWindow {
  public:
    Arrow(wxWindow* parent, const wxSize& size) : wxWindow(parent, wxID_ANY, wxDefaultPosition, size) {
        SetCanFocus(false);
        DisableFocusFromKeyboard();
        Bind(wxEVT_PAINT, [this](wxPaintEvent&) {
            wxPaintDC dc(this);
            const wxSize area = GetClientSize();
            const wxPoint corners[] = {{1, 1}, {area.x - 2, area.y / 2}, {1, area.y - 2}};
            dc.SetPen(*wxTRANSPARENT_PEN);
            dc.SetBrush(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNTEXT)));
            dc.DrawPolygon(3, corners);
        });
    }
};

}  // namespace

frmSendOverNetworkProgress::frmSendOverNetworkProgress(std::function<void()> cancelled)
    : frmDialog(L"Notizen im Netzwerk versenden", L"ch4_network.html"), cancelled_(std::move(cancelled)) {
    // Placed by hand: the rows stand where the arrow points.
    Label1 = CreateLabel(L"Verbindung wird aufgebaut...", 1);
    Label3 = CreateLabel(L"Notizen werden versendet:", 2);
    Label5 = CreateLabel(L"Verbindung wird abgebaut...", 3);
    // Wide enough for what it may say.
    lblProgress = new wxStaticText(this, wxID_ANY, L"000 von 000", wxDefaultPosition, wxDefaultSize,
                                   wxALIGN_RIGHT | wxST_NO_AUTORESIZE);
    const int gap = FromDIP(kDialogGap), margin = FromDIP(kDialogMargin);
    const int barLeft = Label3->GetRect().GetRight() + gap;
    const int least = barLeft + Pixels(kLeastBar) + gap + lblProgress->GetSize().x;
    const int right = margin + std::max(Pixels(kWidth), least - margin);
    lblProgress->SetPosition({right - lblProgress->GetSize().x, Label3->GetPosition().y});
    lblProgress->SetLabel(L"0 von 0");
    const int protocolLeft = Label1->GetRect().GetRight() + gap;
    lblProtocol =
        new wxStaticText(this, wxID_ANY, wxString(), {protocolLeft, Label1->GetPosition().y},
                         {right - protocolLeft, -1}, wxALIGN_RIGHT | wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_END);
    prgNotes = new wxGauge(this, wxID_ANY, 1, wxDefaultPosition,
                           {lblProgress->GetPosition().x - gap - barLeft, Pixels(kArrowSize)},
                           wxGA_HORIZONTAL | wxGA_SMOOTH);
    prgNotes->SetPosition({barLeft, Label3->GetRect().y + (Label3->GetSize().y - prgNotes->GetSize().y) / 2});
    JoinLabel(*Label3, *prgNotes);
    imgArrow = new Arrow(this, {Pixels(kArrowSize), Pixels(kArrowSize)});
    SetStep(0);
    auto* area = new wxBoxSizer(wxVERTICAL);
    area->Add(right - margin, Pixels(kHeight));
    SetContent(area, CreateButtons(L"", L"Ab&brechen"));
    cmdCancel = cmdAbbrechen;

    cmdCancel->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Cancel(); });
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
        Cancel();
        event.Veto();
    });
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (event.GetKeyCode() == WXK_ESCAPE)
            Cancel();
        else
            event.Skip();
    });
    tmrUpdate.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { ShowProgress(); });
    tmrUpdate.Start(kUpdateMilliseconds);
}

int frmSendOverNetworkProgress::Pixels(int twips) const {
    return FromDIP(static_cast<int>(twips / kTwipsPerLogicalPixel));
}

wxStaticText* frmSendOverNetworkProgress::CreateLabel(const wchar_t* caption, int step) {
    auto* label = new wxStaticText(this, wxID_ANY, caption);
    const int middle = Pixels((step - 1) * kRow + kFirstRow + kArrowSize / 2);
    label->SetPosition({Pixels(kLabelLeft), middle - label->GetSize().y / 2});
    return label;
}

void frmSendOverNetworkProgress::Attach(std::shared_ptr<const clsOutgoing> session, std::size_t notes) {
    session_ = std::move(session);
    notes_ = notes;
    lblProtocol->SetLabelText(wxString());
}

void frmSendOverNetworkProgress::SetStep(int step) {
    if (step < 0 || step > 3) return;
    const wxStaticText* const steps[] = {nullptr, Label1, Label3, Label5};
    NamePicture(*imgArrow, PictureRole::Image, steps[step] ? steps[step]->GetLabel() : wxString());
    imgArrow->SetPosition({Pixels(kLeft), Pixels((step - 1) * kRow + kFirstRow)});
}

void frmSendOverNetworkProgress::ShowProgress() {
    if (!session_) return;
    if (!session_->GetRemoteHostProgramVersion().empty())
        lblProtocol->SetLabelText(L"Vers. " + session_->GetRemoteHostProgramVersion());
    const std::wstring sent = session_->GetNumberSentNotes();
    const int total = static_cast<int>(notes_);
    prgNotes->SetRange(std::max(total, 1));
    prgNotes->SetValue(std::min(std::stoi(sent), total));
    lblProgress->SetLabel(sent + L" von " + std::to_wstring(total));
}

void frmSendOverNetworkProgress::Cancel() {
    if (!cmdCancel->IsEnabled()) return;
    cmdCancel->Disable();
    cancelled_();
}
