#include <windows.h>

#include <oleacc.h>
#include <wx/uiaction.h>

#include "tests/support/Controls.h"
#include "tests/support/Events.h"

namespace {

IAccessible* Accessible(wxWindow& control) {
    void* object = nullptr;
    AccessibleObjectFromWindow(control.GetHandle(), static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                               &object);
    return static_cast<IAccessible*>(object);
}

VARIANT Self() {
    VARIANT self;
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    return self;
}

}  // namespace

std::string SpokenName(wxWindow& control) {
    IAccessible* object = Accessible(control);
    if (!object) return {};
    BSTR name = nullptr;
    object->get_accName(Self(), &name);
    object->Release();
    const std::string spoken = wxString(name ? name : L"").utf8_string();
    SysFreeString(name);
    return spoken;
}

std::string SpokenRole(wxWindow& control) {
    IAccessible* object = Accessible(control);
    if (!object) return "unknown";
    VARIANT role{};
    object->get_accRole(Self(), &role);
    object->Release();
    wchar_t text[100] = L"unknown";
    if (role.vt == VT_I4) GetRoleTextW(static_cast<DWORD>(role.lVal), text, 100);
    return wxString(text).utf8_string();
}

bool KeyMovesTo(wxDialog& dialog, wchar_t key, wxWindow& control) {
    dialog.Raise();
    wxUIActionSimulator().Char(key, wxMOD_ALT);
    return RunUntil([&] { return wxWindow::FindFocus() == &control; });
}

std::vector<wxWindow*> TabStops(wxDialog& dialog, const std::vector<wxWindow*>& controls) {
    std::vector<wxWindow*> stops;
    HWND next = GetNextDlgTabItem(dialog.GetHandle(), nullptr, FALSE);
    for (const HWND first = next; next && (stops.empty() || next != first);
         next = GetNextDlgTabItem(dialog.GetHandle(), next, FALSE)) {
        wxWindow* stop = nullptr;
        for (wxWindow* each : controls) {
            if (next == each->GetHandle() || IsChild(each->GetHandle(), next)) stop = each;
        }
        stops.push_back(stop);
    }
    return stops;
}

void PressEnter(wxWindow& control) {
    control.SetFocus();
    wxUIActionSimulator().Char(WXK_RETURN);
}

bool IsDefaultOf(wxDialog& dialog, wxWindow& button) { return dialog.GetDefaultItem() == &button; }

// The system's font is the user's; it is not changed for a test.
LargeFont::LargeFont(int) {}
LargeFont::~LargeFont() {}

std::vector<NamedDialog> DialogsOfPlatform() { return {}; }
