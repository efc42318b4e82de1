#include <windows.h>

#include <initguid.h>
#include <objbase.h>
#include <oleacc.h>
#include <wx/window.h>

#include "base/ControlNames.h"

namespace {

// Calls something with the system's service that tells readers other names and roles than it would itself. A
// system without that service keeps its own.
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

}  // namespace

// The system calls a control by the label before it and moves a key to the control behind it, by itself.
void JoinLabel(wxWindow&, wxWindow&) {}

// The system knows dialogs, and readers read what stands in them.
void AnnounceAs(wxWindow&, DialogRole) {}

void NameControl(wxWindow& control, const wxString& name) {
    const HWND window = control.GetHandle();
    Annotate([&](IAccPropServices& service) {
        service.SetHwndPropStr(window, static_cast<DWORD>(OBJID_CLIENT), CHILDID_SELF, PROPID_ACC_NAME,
                               name.wc_str());
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
