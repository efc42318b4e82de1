#include "dialogs/DialogLayout.h"

#include <wx/dialog.h>
#include <wx/listbox.h>
#include <wx/listctrl.h>
#include <wx/nativewin.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include "dialogs/ControlSize.h"

namespace {

// The least that lists and text boxes show of their content.
constexpr int kLeastCharacters = 20;
constexpr int kLeastLines = 4;

// Does something with every text box, list and other control below a window.
template <class Action>
void ForEachControl(wxWindow& parent, const Action& action) {
    for (wxWindow* child : parent.GetChildren()) {
        if (child->IsTopLevel()) continue;
        action(*child);
        ForEachControl(*child, action);
    }
}

void Fit(wxWindow& control) {
    if (auto* label = dynamic_cast<wxStaticText*>(&control)) FitLabel(*label);
    auto* box = dynamic_cast<wxTextCtrl*>(&control);
    if (!box || box->IsMultiLine()) return;
    box->SetMinSize({box->GetMinSize().x, HeightOf(*box)});
    box->InvalidateBestSize();  // with those of the panels around it
}

bool HasColumns(const wxObject* control) {
    return dynamic_cast<const wxListCtrl*>(control) || dynamic_cast<const wxNativeWindow*>(control);
}

void LetShrink(wxWindow& control) {
    const auto* text = dynamic_cast<wxTextCtrl*>(&control);
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

bool IsList(const wxObject* control) {
    return dynamic_cast<const wxListBox*>(control) || HasColumns(control);
}

void LayOutDialog(wxDialog& dialog, wxSizer* content, wxSizer* buttons) {
    auto* all = new wxBoxSizer(wxVERTICAL);
    const int margin = dialog.FromDIP(kDialogMargin);
    all->Add(content, wxSizerFlags(1).Expand().Border(wxALL, margin));
    all->Add(buttons, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, margin));
    ForEachControl(dialog, Fit);
    if (!dialog.HasFlag(wxRESIZE_BORDER)) {
        dialog.SetSizerAndFit(all);
        return;
    }
    // wxWidgets would make a fitted dialog as small as it can be when it is shown.
    dialog.SetSizer(all);
    dialog.SetClientSize(all->CalcMin());
    ForEachControl(dialog, LetShrink);
    dialog.SetMinClientSize(all->CalcMin());
    // Again whenever the size of the window's frame turns out to be another one.
    dialog.Bind(wxEVT_SIZE, [&dialog, all](wxSizeEvent& event) {
        dialog.SetMinClientSize(all->CalcMin());
        event.Skip();
    });
}
