#pragma once
// Finding open dialogs and working their controls by events, as a user would.

#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/toplevel.h>

#include "base/frmDialog.h"

// The dialog of this kind that waits for its user. One that has ended may still be on the list, and even
// count as shown, until the toolkit deletes it.
template <class Dialog>
Dialog* OpenDialog() {
    for (wxWindow* window : wxTopLevelWindows) {
        auto* dialog = dynamic_cast<Dialog*>(window);
        if (dialog && dialog->IsShown() && dialog->Tag() == L"waiting") return dialog;
    }
    return nullptr;
}

inline void Press(wxWindow* button) {
    wxCommandEvent event(wxEVT_BUTTON, button->GetId());
    event.SetEventObject(button);
    button->ProcessWindowEvent(event);
}

inline void Choose(wxRadioButton* button) {
    button->SetValue(true);
    wxCommandEvent event(wxEVT_RADIOBUTTON, button->GetId());
    event.SetEventObject(button);
    button->ProcessWindowEvent(event);
}

inline void Check(wxCheckBox* box, bool on) {
    box->SetValue(on);
    wxCommandEvent event(wxEVT_CHECKBOX, box->GetId());
    event.SetEventObject(box);
    box->ProcessWindowEvent(event);
}
