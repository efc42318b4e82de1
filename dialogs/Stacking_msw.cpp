#include <windows.h>

#include <wx/toplevel.h>

#include "dialogs/Stacking.h"

namespace {

void Put(const wxTopLevelWindow& window, HWND place) {
    SetWindowPos(window.GetHandle(), place, 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE | SWP_NOOWNERZORDER);
}

}  // namespace

void KeepAbove(wxTopLevelWindow& window, bool above) { Put(window, above ? HWND_TOPMOST : HWND_NOTOPMOST); }

void PutInFront(const std::vector<wxTopLevelWindow*>& windows) {
    for (const wxTopLevelWindow* window : windows) Put(*window, HWND_TOPMOST);
}

// Where the program did it with SetForegroundWindow, the next menu got no keys under Wine.
bool GivesKeyboardBack() { return true; }
