#include "dialogs/frmDialog.h"

#include <wx/button.h>
#include <wx/display.h>
#include <wx/listbox.h>
#include <wx/listctrl.h>
#include <wx/nativewin.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <map>
#include <typeindex>
#include <utility>
#include <vector>

#include "dialogs/BoxHeight.h"
#include "dialogs/ControlNames.h"
#include "dialogs/Stacking.h"
#include "dialogs/basHelp.h"
#include "dialogs/basWait.h"
#include "res/Resources.h"

namespace {

// The dialogs on the screen, the newest last, also those that nobody waits for. One that opens belongs to the
// newest, so that window managers keep it above that one.
std::vector<frmDialog*> openDialogs;

// The size within its frame that the last dialog of each kind had.
std::map<std::type_index, wxSize> keptSizes;

int dialogsAbove = 0;  // how many DialogsAbove live

// The least that lists and text boxes show of their content.
constexpr int kLeastCharacters = 20;
constexpr int kLeastLines = 4;

bool IsEnter(const wxKeyEvent& event) {
    return (event.GetKeyCode() == WXK_RETURN || event.GetKeyCode() == WXK_NUMPAD_ENTER) &&
           !event.HasAnyModifiers();
}

// Does something with every text box, list and other control below a window.
template <class Action>
void ForEachControl(wxWindow& parent, const Action& action) {
    for (wxWindow* child : parent.GetChildren()) {
        if (child->IsTopLevel()) continue;
        action(*child);
        ForEachControl(*child, action);
    }
}

void FitHeight(wxWindow& control) {
    auto* box = dynamic_cast<wxTextCtrl*>(&control);
    if (!box || box->IsMultiLine()) return;
    box->SetMinSize({box->GetMinSize().x, HeightOf(*box)});
    box->InvalidateBestSize();  // with those of the panels around it
}

bool HasColumns(const wxObject* control) {
    return dynamic_cast<const wxListCtrl*>(control) || dynamic_cast<const wxNativeWindow*>(control);
}

bool IsList(const wxObject* control) {
    return dynamic_cast<const wxListBox*>(control) || HasColumns(control);
}

void LetShrink(wxWindow& control) {
    const auto* text = dynamic_cast<const wxTextCtrl*>(&control);
    if (!IsList(&control) && !(text && text->IsMultiLine())) return;
    wxSize least = RoomForText(control, kLeastCharacters, kLeastLines);
    // Columns that are cut are no use.
    if (HasColumns(&control)) least.x = control.GetMinSize().x;
    control.SetMinSize(least);
    control.InvalidateBestSize();
}

}  // namespace

wxSize RoomForText(const wxWindow& window, int characters, int lines) {
    return {characters * window.GetCharWidth(), lines * window.GetCharHeight()};
}

DialogsAbove::DialogsAbove() {
    if (++dialogsAbove == 1) {
        for (frmDialog* dialog : openDialogs) KeepAbove(*dialog, true);
    }
    Again();
}

DialogsAbove::~DialogsAbove() {
    if (--dialogsAbove > 0) return;
    for (frmDialog* dialog : openDialogs) KeepAbove(*dialog, false);
}

bool DialogsAbove::Any() { return dialogsAbove > 0; }

void DialogsAbove::Again() { PutInFront({openDialogs.begin(), openDialogs.end()}); }

frmDialog::frmDialog(const wxString& caption, const std::wstring& helpPage, bool resizable)
    : frmDialog(Owner(), caption, helpPage, resizable) {}

frmDialog::frmDialog(Alone, const wxString& caption, const std::wstring& helpPage)
    : frmDialog(nullptr, caption, helpPage, false) {
    alone_ = true;
}

frmDialog::frmDialog(wxWindow* owner, const wxString& caption, const std::wstring& helpPage, bool resizable)
    : wxDialog(owner, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize,
               wxCAPTION | wxCLOSE_BOX | wxSYSTEM_MENU | (resizable ? wxRESIZE_BORDER : 0) |
                   // Else the toolkit would give it to the active window, with which it would go.
                   (owner ? 0 : wxDIALOG_NO_PARENT)),
      helpPage_(helpPage) {
    AnnounceAs(*this, DialogRole::Dialog);
    SetIcon(LoadPicture(kProgramIcon).GetIcon(FromDIP(wxSize(32, 32))));
    Bind(wxEVT_CHAR_HOOK, &frmDialog::OnKey, this);
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
        if (tag_ == L"waiting") SetTag(L"cancel");
        event.Veto();
    });
    // Window managers place a dialog themselves while it is being shown.
    Bind(wxEVT_SHOW, [this](wxShowEvent& event) {
        if (event.IsShown()) Place();
        event.Skip();
    });
}

wxWindow* frmDialog::Owner() {
    const auto newest =
        std::find_if(openDialogs.rbegin(), openDialogs.rend(), [](frmDialog* each) { return !each->alone_; });
    return newest == openDialogs.rend() ? nullptr : *newest;
}

bool frmDialog::ActivateNewest() {
    if (openDialogs.empty()) return false;
    openDialogs.back()->Raise();
    return true;
}

frmDialog::~frmDialog() { std::erase(openDialogs, this); }

bool frmDialog::Show(bool show) {
    std::erase(openDialogs, this);
    if (show) {
        openDialogs.push_back(this);
        KeepAbove(*this, DialogsAbove::Any());
    }
    return wxDialog::Show(show);
}

void frmDialog::Raise() {
    if (IsShown())
        wxDialog::Raise();
    else
        ActivateNewest();
}

bool frmDialog::Destroy() {
    // It is deleted some time later, and would take with it what it owns.
    std::erase(openDialogs, this);
    return wxDialog::Destroy();
}

void frmDialog::Begin() {
    tag_ = L"waiting";
    begun_ = true;
    Resize();
    Place();
    Show();
    Raise();
}

int frmDialog::ShowModal() {
    Begin();
    if (WaitUntil([this] { return tag_ != L"waiting"; }) == WaitEnd::Quitting) tag_ = L"cancel";
    End();
    return tag_ == L"ok" ? 1 : 0;
}

wxSizer* frmDialog::CreateButtons(const wxString& ok, const wxString& cancel) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->AddStretchSpacer();
    if (!ok.empty()) {
        cmdOK = new wxButton(this, wxID_OK, ok);
        cmdOK->SetDefault();
        cmdOK->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Confirm(); });
        row->Add(cmdOK);
    }
    if (!cancel.empty()) {
        cmdAbbrechen = new wxButton(this, wxID_CANCEL, cancel);
        cmdAbbrechen->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { SetTag(L"cancel"); });
        // Where there is nothing to confirm, Enter is not to stop what is under way by pressing the only
        // button.
        cmdAbbrechen->Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
            if (m_winDefault || !IsEnter(event)) event.Skip();
        });
        if (cmdOK) row->AddSpacer(FromDIP(kDialogGap));
        row->Add(cmdAbbrechen);
    }
    return row;
}

void frmDialog::SetContent(wxSizer* content, wxSizer* buttons) {
    auto* all = new wxBoxSizer(wxVERTICAL);
    const int margin = FromDIP(kDialogMargin);
    all->Add(content, wxSizerFlags(1).Expand().Border(wxALL, margin));
    all->Add(buttons, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, margin));
    NameControls(*this);
    ForEachControl(*this, FitHeight);
    if (HasFlag(wxRESIZE_BORDER)) {
        // A fitted dialog would be fitted once more when it is shown, to the least size.
        SetSizer(all);
        SetClientSize(all->CalcMin());
        ForEachControl(*this, LetShrink);
        SetMinClientSize(all->CalcMin());
        // Again whenever the size of the window's frame turns out to be another one.
        Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
            SetMinClientSize(GetSizer()->CalcMin());
            event.Skip();
        });
    } else {
        SetSizerAndFit(all);
    }
}

void frmDialog::Confirm() { SetTag(L"ok"); }

void frmDialog::SetTag(const std::wstring& tag) {
    tag_ = tag;
    // At once: whoever waits for it may have to wait for dialogs that were opened later.
    if (End() && tag_ == L"ok" && OnConfirmed) OnConfirmed();
    WakeWaits();
}

bool frmDialog::End() {
    if (!std::exchange(begun_, false)) return false;
    if (HasFlag(wxRESIZE_BORDER)) keptSizes[typeid(*this)] = GetClientSize();
    const bool active = IsActive();
    Hide();
    if (active && !IsQuitting()) ActivateNewest();
    if (alone_) Destroy();
    return true;
}

void frmDialog::OnKey(wxKeyEvent& event) {
    if (event.GetKeyCode() == WXK_F1 && !helpPage_.empty()) {
        ShowHelp(helpPage_);
    } else if (event.GetKeyCode() == WXK_RETURN && event.ControlDown() && cmdOK && cmdOK->IsShown()) {
        // Enter alone belongs to multi-line boxes.
        if (cmdOK->IsEnabled()) Confirm();
    } else if (IsEnter(event) && IsList(event.GetEventObject())) {
        // Lists would keep it for themselves.
        PressDefault();
    } else if (FollowKey(*this, event)) {
        // Done.
    } else if (event.GetKeyCode() == WXK_ESCAPE) {
        SetTag(L"cancel");
    } else {
        event.Skip();
    }
}

void frmDialog::PressDefault() {
    wxWindow* button = GetDefaultItem();
    if (!button || !button->IsEnabled()) return;
    wxCommandEvent press(wxEVT_BUTTON, button->GetId());
    press.SetEventObject(button);
    button->ProcessWindowEvent(press);
}

void frmDialog::Resize() {
    if (!HasFlag(wxRESIZE_BORDER)) return;
    const auto kept = keptSizes.find(typeid(*this));
    wxSize size = kept == keptSizes.end() ? GetClientSize() : kept->second;
    size.DecTo(WindowToClientSize(Area().GetSize()));
    size.IncTo(GetMinClientSize());
    SetClientSize(size);
}

wxRect frmDialog::Area() const {
    const int display = near_ ? wxDisplay::GetFromPoint(near_->GetTopLeft()) : wxNOT_FOUND;
    return wxDisplay(static_cast<unsigned>(std::max(display, 0))).GetClientArea();
}

void frmDialog::Place() {
    const wxRect area = Area();
    const wxSize size = GetSize();
    wxPoint place;
    if (near_) {
        const int gap = FromDIP(kDialogMargin);
        place.x = near_->GetRight() + gap;
        place.y = near_->y;
        if (place.x + size.x > area.GetRight()) place.x = near_->x - gap - size.x;
        if (place.x < area.x) {
            // No room beside it: below it, else above it.
            place.x = near_->x;
            place.y = near_->GetBottom() + gap;
            if (place.y + size.y > area.GetBottom()) place.y = near_->y - gap - size.y;
        }
    } else {
        place.x = area.x + (area.width - size.x) / 2;
        place.y = area.y + (area.height - size.y) / 2;
    }
    place.x = std::max(area.x, std::min(place.x, area.GetRight() - size.x));
    place.y = std::max(area.y, std::min(place.y, area.GetBottom() - size.y));
    SetPosition(place);
}
