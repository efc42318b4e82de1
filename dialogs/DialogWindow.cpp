#include "dialogs/DialogWindow.h"

#include <utility>

#include "dialogs/ControlNames.h"
#include "dialogs/DialogPlace.h"
#include "dialogs/DialogStack.h"
#include "dialogs/Stacking.h"
#include "dialogs/Wait.h"
#include "res/Resources.h"
#include "res/Theme.h"

DialogWindow::DialogWindow(const wxString& caption, bool resizable)
    : DialogWindow(OwnerOfNextDialog(), caption, resizable) {}

DialogWindow::DialogWindow(Alone, const wxString& caption, bool resizable)
    : DialogWindow(nullptr, caption, resizable) {
    alone_ = true;
}

DialogWindow::DialogWindow(wxWindow* owner, const wxString& caption, bool resizable)
    : wxDialog(owner, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize,
               wxCAPTION | wxCLOSE_BOX | wxSYSTEM_MENU | (resizable ? wxRESIZE_BORDER : 0) |
                   // Else wxWidgets would make the active window its owner, and it would go with that.
                   (owner ? 0 : wxDIALOG_NO_PARENT)) {
    LoadTheme();
    AnnounceAs(*this, DialogRole::Dialog);
    SetIcon(LoadPicture(kProgramIcon).GetIcon(FromDIP(wxSize(32, 32))));
    Bind(wxEVT_CHAR_HOOK, &DialogWindow::OnKey, this);
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
        if (state_ == DialogState::Waiting) End(DialogState::Cancel);
        event.Veto();
    });
    // Window managers place a dialog themselves while it is being shown.
    Bind(wxEVT_SHOW, [this](wxShowEvent& event) {
        if (event.IsShown()) Place();
        event.Skip();
    });
}

DialogWindow::~DialogWindow() { LeaveDialogStack(*this); }

bool DialogWindow::Show(bool show) {
    if (show)
        EnterDialogStack(*this, !alone_);
    else
        LeaveDialogStack(*this);
    return wxDialog::Show(show);
}

void DialogWindow::Raise() {
    if (IsShown())
        wxDialog::Raise();
    else
        ActivateNewestDialog();
}

bool DialogWindow::Destroy() {
    // wxWidgets deletes it some time later, and then also the dialogs that belong to it. Until then it would
    // leave it on the screen if nothing else of the program is there.
    Hide();
    return wxDialog::Destroy();
}

std::wstring DialogWindow::Tag() const {
    switch (state_) {
        case DialogState::Waiting:
            return L"waiting";
        case DialogState::Ok:
            return L"ok";
        case DialogState::Cancel:
            return L"cancel";
    }
    return {};
}

void DialogWindow::Begin() {
    state_ = DialogState::Waiting;
    begun_ = true;
    keyboardReturn_ = KeyboardReturn::Current();
    if (HasFlag(wxRESIZE_BORDER)) RestoreSize(*this, Area());
    Place();
    Show();
    Raise();
}

int DialogWindow::ShowModal() {
    Begin();
    const WaitEnd end = WaitUntil([this] { return state_ != DialogState::Waiting; });
    if (end == WaitEnd::Quitting) state_ = DialogState::Cancel;
    LeaveScreen();
    return state_ == DialogState::Ok ? 1 : 0;
}

void DialogWindow::End(DialogState result) {
    state_ = result;
    // At once: whoever waits for it may have to wait for dialogs that were opened later.
    if (LeaveScreen()) {
        if (state_ == DialogState::Ok && OnConfirmed) OnConfirmed();
        if (!IsQuitting()) Ended();
    }
    WakeWaits();
}

bool DialogWindow::LeaveScreen() {
    if (!std::exchange(begun_, false)) return false;
    if (HasFlag(wxRESIZE_BORDER)) KeepSize(*this);
    const bool active = IsActive();
    Hide();
    const bool last = active && !IsQuitting() && !ActivateNewestDialog();
    if (last && keyboardReturn_ && !GivesKeyboardBack()) keyboardReturn_();
    if (alone_) Destroy();
    return true;
}

void DialogWindow::SetContent(wxSizer* content, wxSizer* buttons) {
    NameControls(*this);
    LayOutDialog(*this, content, buttons);
}

wxRect DialogWindow::Area() const { return DialogArea(near_); }

void DialogWindow::Place() { SetPosition(DialogPlace(GetSize(), Area(), near_, FromDIP(kDialogMargin))); }
