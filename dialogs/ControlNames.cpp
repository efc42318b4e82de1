#include "dialogs/ControlNames.h"

#include <wx/choice.h>
#include <wx/gauge.h>
#include <wx/listbase.h>
#include <wx/listbox.h>
#include <wx/panel.h>
#include <wx/spinctrl.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

namespace {

template <class... Kinds>
bool IsOneOf(const wxWindow* window) {
    return (dynamic_cast<const Kinds*>(window) || ...);
}

// Whether it has no text of its own that says what it is for.
bool NeedsName(const wxWindow* window) {
    return IsOneOf<wxTextCtrl, wxSpinCtrl, wxListBox, wxChoice, wxGauge>(window);
}

bool HasKey(const wxWindow& label) { return wxControl::FindAccelIndex(label.GetLabel()) != wxNOT_FOUND; }

// The first control at or inside the window that can have the focus.
wxWindow* FirstControl(wxWindow* window) {
    if (!IsOneOf<wxPanel, wxStaticBox>(window)) return window->AcceptsFocus() ? window : nullptr;
    for (wxWindow* child : window->GetChildren()) {
        if (wxWindow* control = FirstControl(child)) return control;
    }
    return nullptr;
}

}  // namespace

void NameControls(wxWindow& parent) {
    wxWindow* label = nullptr;  // the one just passed
    for (wxWindow* child : parent.GetChildren()) {
        if (child->IsTopLevel()) continue;
        if (label && (NeedsName(child) || HasKey(*label))) JoinLabel(*label, *child);
        label = IsOneOf<wxStaticText>(child) && !child->GetLabel().empty() ? child : nullptr;
        if (IsOneOf<wxStaticBox>(child)) {
            wxWindow* first = FirstControl(child);
            if (first && (NeedsName(first) || HasKey(*child))) JoinLabel(*child, *first);
        }
        if (IsOneOf<wxPanel, wxStaticBox>(child)) NameControls(*child);
    }
}
