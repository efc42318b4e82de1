#include <windows.h>

#include <commctrl.h>
#include <oleacc.h>
#include <wx/dcmemory.h>
#include <wx/image.h>
#include <wx/listbox.h>
#include <wx/msw/private.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/uiaction.h>

#include <algorithm>

#include "tests/support/Controls.h"
#include "tests/support/Events.h"
#include "tests/support/Readers_msw.h"

namespace {

using namespace std::chrono_literals;

IAccessible* Accessible(wxWindow& control) {
    void* object = nullptr;
    AccessibleObjectFromWindow(control.GetHandle(), static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                               &object);
    return static_cast<IAccessible*>(object);
}

std::string RoleText(LONG role) {
    wchar_t text[100] = L"unknown";
    GetRoleTextW(static_cast<DWORD>(role), text, 100);
    return wxString(text).utf8_string();
}

// The window that has the focus when the control has it: of a number the box, not the arrows.
HWND FocusWindow(wxWindow& control) {
    const HWND window = control.GetHandle();
    if (!dynamic_cast<wxSpinCtrl*>(&control)) return window;
    return reinterpret_cast<HWND>(SendMessageW(window, UDM_GETBUDDY, 0, 0));
}

VARIANT Self() {
    VARIANT self;
    self.vt = VT_I4;
    self.lVal = CHILDID_SELF;
    return self;
}

// The control that has the focus; null for none of them.
wxWindow* FocusedOf(const std::vector<wxWindow*>& controls) {
    wxWindow* focused = wxWindow::FindFocus();
    while (focused && std::find(controls.begin(), controls.end(), focused) == controls.end())
        focused = focused->GetParent();
    return focused;
}

}  // namespace

std::string SpokenName(wxWindow& control) {
    if (const auto given = NameGivenTo(FocusWindow(control))) return wxString(*given).utf8_string();
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
    if (const auto given = RoleGivenTo(control.GetHandle())) return RoleText(*given);
    IAccessible* object = Accessible(control);
    if (!object) return "unknown";
    VARIANT role{};
    object->get_accRole(Self(), &role);
    object->Release();
    return role.vt == VT_I4 ? RoleText(role.lVal) : "unknown";
}

void TypeKey(int key, int modifiers) {
    wxUIActionSimulator().Char(key, modifiers);
    RunUntil([] { return HIWORD(GetQueueStatus(QS_KEY)) == 0; });
    RunPosted();
}

void PressKey(wxWindow& control, int key, int modifiers) {
    control.SetFocus();
    TypeKey(key, modifiers);
}

bool KeyMovesTo(wxDialog& dialog, wchar_t key, wxWindow& control) {
    // From the first control, mostly in a panel, or from another one if it is to lead there.
    HWND from = GetNextDlgTabItem(dialog.GetHandle(), nullptr, FALSE);
    if (from == FocusWindow(control)) from = GetNextDlgTabItem(dialog.GetHandle(), from, FALSE);
    SetFocus(from);
    TypeKey(key, wxMOD_ALT);
    return RunUntil([&] { return wxWindow::FindFocus() == &control; });
}

std::vector<wxWindow*> TabStops(wxDialog&, const std::vector<wxWindow*>& controls) {
    std::vector<wxWindow*> stops;
    const HWND start = GetFocus();
    do {
        const HWND before = GetFocus();
        TypeKey(WXK_TAB);
        RunUntil([&] { return GetFocus() != before; }, 500ms);
        stops.push_back(FocusedOf(controls));
    } while (GetFocus() != start && stops.size() < 2 * controls.size());
    // It is a circle: the first control first.
    const auto isEarlier = [&](wxWindow* one, wxWindow* other) {
        return std::find(controls.begin(), controls.end(), one) <
               std::find(controls.begin(), controls.end(), other);
    };
    std::rotate(stops.begin(), std::min_element(stops.begin(), stops.end(), isEarlier), stops.end());
    return stops;
}

bool HasKeyboard(wxWindow& control) { return control.HasFocus(); }

void Click(wxListBox& list, int row) {
    const HWND rows = list.GetHandle();
    RECT place{};
    SendMessageW(rows, LB_SETTOPINDEX, static_cast<WPARAM>(row), 0);
    SendMessageW(rows, LB_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&place));
    const LPARAM point = MAKELPARAM(place.left + 2, (place.top + place.bottom) / 2);
    SendMessageW(rows, WM_LBUTTONDOWN, MK_LBUTTON, point);
    SendMessageW(rows, WM_LBUTTONUP, 0, point);
}

std::wstring CellText(wxWindow& list, int row, int column) {
    wchar_t text[256] = L"";
    LVITEMW item{};
    item.iSubItem = column;
    item.pszText = text;
    item.cchTextMax = 256;
    SendMessageW(list.GetHandle(), LVM_GETITEMTEXTW, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&item));
    return text;
}

void ClickBox(wxWindow& list, int row) {
    const bool on = ListView_GetCheckState(list.GetHandle(), row) != 0;
    ListView_SetCheckState(list.GetHandle(), row, !on);
}

void ClickHeading(wxWindow& list, int column) {
    NMLISTVIEW click{};
    click.hdr = {list.GetHandle(), static_cast<UINT_PTR>(list.GetId()), static_cast<UINT>(LVN_COLUMNCLICK)};
    click.iItem = -1;
    click.iSubItem = column;
    SendMessageW(GetParent(list.GetHandle()), WM_NOTIFY, click.hdr.idFrom, reinterpret_cast<LPARAM>(&click));
}

bool IsDefaultOf(wxDialog& dialog, wxWindow& button) { return dialog.GetDefaultItem() == &button; }

namespace {

// How many pixels the text of a label covers, drawn as Windows does it in a label of this width.
std::size_t Ink(const wxStaticText& label, int width) {
    const wxSize size(width, label.GetSize().y);
    wxBitmap paper(size);
    paper.SetScaleFactor(label.GetContentScaleFactor());  // for the font
    wxMemoryDC dc(paper);
    dc.SetBackground(*wxWHITE_BRUSH);
    dc.Clear();
    dc.SetFont(label.GetFont());
    RECT room{0, 0, size.x, size.y};
    const wxString text = wxGetWindowText(label.GetHandle());
    DrawTextW(dc.GetHDC(), text.wc_str(), -1, &room, DT_WORDBREAK | DT_EXPANDTABS);
    dc.SelectObject(wxNullBitmap);
    const wxImage image = paper.ConvertToImage();
    const unsigned char* const bytes = image.GetData();
    return 3 * static_cast<std::size_t>(size.x * size.y) -
           static_cast<std::size_t>(std::count(bytes, bytes + 3 * size.x * size.y, 0xFF));
}

}  // namespace

bool ShowsAllOfText(const wxStaticText& label) {
    const int width = label.GetSize().x;
    return Ink(label, width) == Ink(label, 2 * width);
}

// Windows asks its parent for the colour whenever the text is painted.
wxColour PaperBehindText(wxTextCtrl& box) {
    const HWND window = box.GetHandle();
    const HDC dc = GetDC(window);
    SendMessageW(GetParent(window), WM_CTLCOLOREDIT, reinterpret_cast<WPARAM>(dc),
                 reinterpret_cast<LPARAM>(window));
    const COLORREF paper = GetBkColor(dc);
    ReleaseDC(window, dc);
    return {GetRValue(paper), GetGValue(paper), GetBValue(paper)};
}

std::vector<NamedDialog> DialogsOfPlatform() { return {}; }
