#include "app/frmSplash.h"

#include <wx/dcclient.h>
#include <wx/settings.h>

#include "app/Platform.h"
#include "base/basWait.h"
#include "res/Resources.h"

namespace {
constexpr std::chrono::milliseconds kMoment{250};
}

frmSplash::frmSplash()
    : wxFrame(nullptr, wxID_ANY, L"Kivora", wxDefaultPosition, wxDefaultSize,
              wxBORDER_NONE | wxFRAME_NO_TASKBAR | wxSTAY_ON_TOP),
      picture_(LoadPicture(kSplashPicture).GetBitmapFor(this)) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    SetClientSize(picture_.IsOk() ? picture_.GetLogicalSize() : FromDIP(wxSize(320, 160)));
    CentreOnScreen();
    NeverFocus(*this);
    Bind(wxEVT_PAINT, &frmSplash::OnPaint, this);
    for (const auto& click : {wxEVT_LEFT_DOWN, wxEVT_MIDDLE_DOWN, wxEVT_RIGHT_DOWN})
        Bind(click, &frmSplash::Close, this);
    Bind(wxEVT_KEY_DOWN, &frmSplash::Close, this);
}

void frmSplash::ShowForAMoment() {
    auto* splash = new frmSplash;
    splash->Show();
    WaitUntil([splash] { return splash->closed_; }, kMoment);
    splash->Hide();  // the rest would be seen behind it
    splash->Destroy();
}

void frmSplash::OnPaint(wxPaintEvent&) {
    wxPaintDC dc(this);
    if (picture_.IsOk()) dc.DrawBitmap(picture_, 0, 0);
    const wxString version = L"Version " + wxString::FromUTF8(KIVORA_VERSION);
    dc.SetFont(GetFont());
    dc.SetTextForeground(*wxBLACK);
    // Below the name, which the picture has at its lower left.
    const wxSize place = FromDIP(wxSize(32, 8));
    const int top = GetClientSize().y - dc.GetTextExtent(version).y - place.y;
    dc.DrawText(version, place.x, top);
}

void frmSplash::Close(wxEvent&) {
    closed_ = true;
    WakeWaits();
}
