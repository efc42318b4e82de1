#include "app/frmSplash.h"

#include <wx/dcclient.h>

#include <algorithm>

#include "app/Platform.h"
#include "dialogs/Wait.h"
#include "res/Resources.h"

namespace {
constexpr int kStrip = 3;  // pixels
}  // namespace

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

void frmSplash::ShowForAMoment(std::chrono::milliseconds moment) {
    auto* splash = new frmSplash;
    splash->Show();
    WaitUntil([splash] { return splash->closed_; }, moment);
    splash->Hide();  // the rest would be seen behind it
    splash->Destroy();
}

void frmSplash::OnPaint(wxPaintEvent&) {
    wxPaintDC dc(this);
    // In strips: GTK hands pictures to the X server through shared memory that it keeps for good, as much as
    // the first picture took.
    const wxSize size = picture_.IsOk() ? picture_.GetLogicalSize() : wxSize();
    for (int top = 0; top < size.y; top += kStrip) {
        const wxRect strip(0, top, size.x, std::min(kStrip, size.y - top));
        dc.DrawBitmap(picture_.GetSubBitmap(strip), strip.GetPosition());
    }
    const wxString version = L"Version " + wxString::FromUTF8(KIVORA_VERSION);
    // That of new notes: each size of a font is looked up anew.
    dc.SetFont(wxFont(wxFontInfo(12).FaceName(L"Arial")));
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
