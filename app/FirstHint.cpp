#include "app/FirstHint.h"

#include <wx/dcbuffer.h>
#include <wx/display.h>
#include <wx/popupwin.h>
#include <wx/settings.h>

#include <algorithm>

#include "dialogs/ControlNames.h"
#include "model/NewPlace.h"
#include "notes/NotePlace.h"
#include "registry/RegistryHealth.h"
#include "registry/SettingsKey.h"
#include "registry/clsRegistry.h"
#include "res/Theme.h"

namespace {

constexpr const wchar_t* kText = L"Doppelklick: neue Notiz \u00B7 Rechtsklick: Menü";

// A notification area that does not take the icon is given up sooner.
constexpr int kUntilPlacedMilliseconds = 2000;
constexpr int kShownMilliseconds = 12'000;
constexpr int kMargin = 10;  // device-independent pixels

class HintWindow : public wxPopupWindow {
  public:
    HintWindow(wxWindow& owner, std::function<void()> clicked) : wxPopupWindow(&owner, wxBORDER_NONE) {
        LoadTheme();
        SetBackgroundStyle(wxBG_STYLE_PAINT);
        NameControl(*this, kText);
        const int margin = FromDIP(kMargin);
        SetClientSize(GetTextExtent(kText) + wxSize(2 * margin, 2 * margin));
        Bind(wxEVT_PAINT, &HintWindow::OnPaint, this);
        for (const auto& click : {wxEVT_LEFT_DOWN, wxEVT_MIDDLE_DOWN, wxEVT_RIGHT_DOWN})
            Bind(click, [clicked](wxMouseEvent&) { clicked(); });
    }

  private:
    void OnPaint(wxPaintEvent&) {
        wxAutoBufferedPaintDC dc(this);
        const wxColour ink = wxSystemSettings::GetColour(wxSYS_COLOUR_INFOTEXT);
        dc.SetPen(wxPen(ink));
        dc.SetBrush(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_INFOBK)));
        dc.DrawRectangle(GetClientSize());
        dc.SetFont(GetFont());
        dc.SetTextForeground(ink);
        dc.DrawText(kText, FromDIP(kMargin), FromDIP(kMargin));
    }
};

// The corner in which notification areas are: the lower right one, or the upper right one of a desktop that
// has its only panel above.
wxRect UsualCorner(const wxDisplay& screen) {
    const wxRect all = screen.GetGeometry(), area = screen.GetClientArea();
    const bool above = area.y > all.y && area.GetBottom() == all.GetBottom();
    return {area.x + area.width, above ? area.y : area.y + area.height, 0, 0};
}

}  // namespace

bool IsFirstStart() {
    std::vector<std::wstring> names;
    return Registry().EnumKeys(kSettingsKey, names) < 0 && HealthOfRegistry().reading.Kept();
}

FirstHint::FirstHint(wxWindow& owner, NoteStore& store, std::function<std::optional<wxRect>()> place)
    : owner_(owner), place_(std::move(place)), notes_(store, [this, &store] {
          if (store.CountNotes() > 0) End();
      }) {
    StartOnce(kUntilPlacedMilliseconds);
}

FirstHint::~FirstHint() { End(); }

void FirstHint::Notify() {
    if (window_)
        End();
    else
        Show();
}

void FirstHint::End() {
    Stop();
    if (!window_) return;
    window_->Hide();
    window_->Destroy();  // some time later: it may be in the middle of its click
    window_ = nullptr;
}

void FirstHint::Show() {
    const std::optional<wxRect> icon = place_();
    const int found = icon ? wxDisplay::GetFromPoint(icon->GetPosition() + icon->GetSize() / 2) : 0;
    const wxDisplay screen(static_cast<unsigned>(std::max(found, 0)));
    window_ = new HintWindow(owner_, [this] { End(); });
    const wxSize size = window_->GetSize();
    const PixelRect place = BesideIcon(FromWx(screen.GetClientArea()),
                                       FromWx(icon ? *icon : UsualCorner(screen)), size.x, size.y);
    window_->Move(place.x, place.y);
    window_->Show();
    StartOnce(kShownMilliseconds);
}
