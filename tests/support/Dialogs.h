#pragma once
// Finding open dialogs and working their controls by events, as a user would.

#include <gtest/gtest.h>
#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/timer.h>
#include <wx/toplevel.h>

#include <functional>
#include <utility>

#include "dialogs/DialogWindow.h"

// The newest dialog of this kind that is open. One that has ended may still be on the list, and even
// count as shown, until wxWidgets deletes it.
template <class Dialog>
Dialog* OpenDialog() {
    Dialog* newest = nullptr;
    for (wxWindow* window : wxTopLevelWindows) {
        auto* dialog = dynamic_cast<Dialog*>(window);
        if (dialog && dialog->IsShown() && !wxPendingDelete.Member(dialog) &&
            dialog->State() == DialogState::Waiting)
            newest = dialog;
    }
    return newest;
}

// Does something with a dialog soon after it has opened, or once it is ready. To be kept until then.
template <class Dialog>
class WhenShown : public wxTimer {
  public:
    explicit WhenShown(std::function<void(Dialog&)> act, std::function<bool(Dialog&)> ready = {})
        : act_(std::move(act)), ready_(std::move(ready)) {
        Start(10);
    }
    void Notify() override {
        Dialog* dialog = OpenDialog<Dialog>();
        if (!dialog || (ready_ && !ready_(*dialog))) return;
        Stop();
        act_(*dialog);
        // A test that has given up would wait for ever for somebody to close it.
        if (testing::Test::HasFatalFailure() && OpenDialog<Dialog>() == dialog) dialog->Close();
    }

  private:
    std::function<void(Dialog&)> act_;
    std::function<bool(Dialog&)> ready_;
};

// What a control tells its dialog.
inline void Tell(wxEventType type, wxWindow* control) {
    wxCommandEvent event(type, control->GetId());
    event.SetEventObject(control);
    control->ProcessWindowEvent(event);
}

inline void Press(wxWindow* button) { Tell(wxEVT_BUTTON, button); }

inline void Choose(wxRadioButton* button) {
    button->SetValue(true);
    Tell(wxEVT_RADIOBUTTON, button);
}

inline void Check(wxCheckBox* box, bool on) {
    box->SetValue(on);
    Tell(wxEVT_CHECKBOX, box);
}
