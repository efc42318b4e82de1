// The buttons of a dialog, and the keys that mean the same in all of them.

#include <wx/button.h>

#include "dialogs/ControlNames.h"
#include "dialogs/DialogWindow.h"

namespace {

bool IsEnter(const wxKeyEvent& event) {
    return (event.GetKeyCode() == WXK_RETURN || event.GetKeyCode() == WXK_NUMPAD_ENTER) &&
           !event.HasAnyModifiers();
}

}  // namespace

wxSizer* DialogWindow::CreateButtons(const wxString& ok, const wxString& cancel) {
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
        cmdAbbrechen->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { End(DialogState::Cancel); });
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

void DialogWindow::Confirm() { End(DialogState::Ok); }

// On Windows the key is still in the queue: whatever lets events run before it has been heard, such as a
// question, would hear it again.
void DialogWindow::Later(void (DialogWindow::*action)()) {
    CallAfter([this, action] {
        if (IsShown()) (this->*action)();
    });
}

void DialogWindow::OnKey(wxKeyEvent& event) {
    if (event.GetKeyCode() == WXK_F1 && Help()) return;
    if (event.GetKeyCode() == WXK_RETURN && event.ControlDown() && cmdOK && cmdOK->IsShown()) {
        // Enter alone belongs to multi-line boxes.
        if (cmdOK->IsEnabled()) Later(&DialogWindow::Confirm);
    } else if (IsEnter(event) && IsList(event.GetEventObject())) {
        // Lists would keep it for themselves.
        Later(&DialogWindow::PressDefault);
    } else if (FollowKey(*this, event)) {
        // Done.
    } else if (event.GetKeyCode() == WXK_ESCAPE) {
        Later(&DialogWindow::LeaveByKey);
    } else {
        event.Skip();
    }
}

void DialogWindow::LeaveByKey() { Close(); }  // as by the close box

void DialogWindow::PressDefault() {
    wxWindow* button = GetDefaultItem();
    if (!button || !button->IsEnabled()) return;
    wxCommandEvent press(wxEVT_BUTTON, button->GetId());
    press.SetEventObject(button);
    button->ProcessWindowEvent(press);
}
