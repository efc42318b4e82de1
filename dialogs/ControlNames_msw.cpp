#include <windows.h>

#include <commctrl.h>
#include <initguid.h>
#include <objbase.h>
#include <oleacc.h>
#include <wx/anybutton.h>
#include <wx/checkbox.h>
#include <wx/radiobut.h>
#include <wx/spinctrl.h>
#include <wx/statbox.h>
#include <wx/stattext.h>
#include <wx/weakref.h>

#include <algorithm>
#include <vector>

#include "dialogs/ControlNames.h"

namespace {

// Calls something with the service of Windows (Dynamic Annotation) by which screen readers are told other
// names and roles than Windows would give. Where that service is missing, Windows' own names remain.
template <class Action>
void Annotate(const Action& action) {
    static IAccPropServices* const service = [] {
        void* made = nullptr;
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        CoCreateInstance(CLSID_AccPropServices, nullptr, CLSCTX_INPROC_SERVER, IID_IAccPropServices, &made);
        return static_cast<IAccPropServices*>(made);
    }();
    if (service) action(*service);
}

// With a label: the control that it speaks for.
struct Joined : wxClientData {
    explicit Joined(wxWindow& joined) : control(&joined) {}
    wxWeakRef<wxWindow> control;
};

template <class... Kinds>
bool IsOneOf(const wxWindow& window) {
    return (dynamic_cast<const Kinds*>(&window) || ...);
}

bool IsPressed(const wxWindow& window) { return IsOneOf<wxAnyButton, wxCheckBox, wxRadioButton>(window); }

// Where the key of a caption leads; null for nowhere.
wxWindow* TargetOf(wxWindow& caption) {
    if (IsPressed(caption)) return caption.IsEnabled() ? &caption : nullptr;
    const auto* joined = dynamic_cast<Joined*>(caption.GetClientObject());
    wxWindow* control = joined ? joined->control.get() : nullptr;
    return control && control->CanAcceptFocus() ? control : nullptr;
}

wchar_t KeyOf(const wxWindow& caption) {
    if (!IsPressed(caption) && !IsOneOf<wxStaticText, wxStaticBox>(caption)) return 0;
    const wxString label = caption.GetLabel();
    const int place = wxControl::FindAccelIndex(label);
    if (place == wxNOT_FOUND) return 0;
    return static_cast<wchar_t>(
        wxToupper(wxControl::RemoveMnemonics(label)[static_cast<std::size_t>(place)]));
}

// The captions below a window whose key it is and leads somewhere, in the order of the Tab key.
void Collect(wxWindow& parent, wchar_t key, std::vector<wxWindow*>& captions) {
    for (wxWindow* child : parent.GetChildren()) {
        if (child->IsTopLevel() || !child->IsShown()) continue;
        if (KeyOf(*child) == key && TargetOf(*child)) captions.push_back(child);
        Collect(*child, key, captions);
    }
}

// The Windows windows of a control: a number has two, its box and the arrows beside it.
std::vector<HWND> WindowsOf(const wxWindow& control) {
    const HWND window = control.GetHandle();
    if (!IsOneOf<wxSpinCtrl>(control)) return {window};
    return {window, reinterpret_cast<HWND>(SendMessageW(window, UDM_GETBUDDY, 0, 0))};
}

}  // namespace

// Windows would call a control by the label right before it, but takes no notice of frames, and would look
// for keys only in the panel that has the focus.
void JoinLabel(wxWindow& label, wxWindow& control) {
    label.SetClientObject(new Joined(control));
    if (!IsPressed(control)) NameControl(control, wxControl::RemoveMnemonics(label.GetLabel()));
}

bool FollowKey(wxWindow& window, const wxKeyEvent& event) {
    if (event.GetModifiers() != wxMOD_ALT || event.GetKeyCode() <= WXK_SPACE ||
        event.GetKeyCode() >= WXK_DELETE)
        return false;
    std::vector<wxWindow*> captions;
    Collect(window, static_cast<wchar_t>(event.GetKeyCode()), captions);
    if (captions.empty()) return false;
    // Of several the one behind the focus.
    const auto current = std::find_if(captions.begin(), captions.end(), [](wxWindow* caption) {
        return TargetOf(*caption) == wxWindow::FindFocus();
    });
    wxWindow* caption =
        current == captions.end() || current + 1 == captions.end() ? captions.front() : *(current + 1);
    wxWindow* target = TargetOf(*caption);
    // Windows opens the system menu when Alt is released unless it has seen another key meanwhile.
    constexpr LPARAM kAltIsDown = 1 << 29;
    DefWindowProcW(window.GetHandle(), WM_SYSKEYDOWN, static_cast<WPARAM>(event.GetRawKeyCode()), kAltIsDown);
    target->SetFocusFromKbd();
    // Of several none is pressed, for another one may be meant; nor is a button behind a label.
    if (captions.size() == 1 && target == caption) PostMessageW(target->GetHandle(), BM_CLICK, 0, 0);
    return true;
}

// Windows announces its dialogs as what they are, and screen readers read all that stands in them.
void AnnounceAs(wxWindow&, DialogRole) {}

void NameControl(wxWindow& control, const wxString& name) {
    Annotate([&](IAccPropServices& service) {
        for (const HWND window : WindowsOf(control)) {
            service.SetHwndPropStr(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, PROPID_ACC_NAME,
                                   name.wc_str());
        }
    });
}

void NamePicture(wxWindow& picture, PictureRole role, const wxString& name) {
    NameControl(picture, name);
    const HWND window = picture.GetHandle();
    VARIANT value;
    value.vt = VT_I4;
    value.lVal = role == PictureRole::Image ? ROLE_SYSTEM_GRAPHIC : ROLE_SYSTEM_PROGRESSBAR;
    Annotate([&](IAccPropServices& service) {
        service.SetHwndProp(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, PROPID_ACC_ROLE, value);
    });
}
