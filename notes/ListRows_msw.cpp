#include <windows.h>

#include <wx/listbox.h>

#include "notes/ListRows.h"

// List boxes of Windows cut long rows off and cannot end them in dots.
void EndInDots(wxListBox&) {}

// Rows of a Windows list box are of one height by themselves.
void MakeRowsAlike(wxListBox&) {}

void SelectAllRows(wxListBox& list, bool on) {
    const HWND rows = list.GetHandle();
    const LRESULT before = SendMessageW(rows, LB_GETSELCOUNT, 0, 0);
    SendMessageW(rows, LB_SETSEL, on, -1);
    if (SendMessageW(rows, LB_GETSELCOUNT, 0, 0) == before) return;
    wxCommandEvent event(wxEVT_LISTBOX, list.GetId());
    event.SetEventObject(&list);
    list.ProcessWindowEvent(event);
}

int CurrentRow(const wxListBox& list) {
    const HWND rows = list.GetHandle();
    return list.IsEmpty() ? -1 : static_cast<int>(SendMessageW(rows, LB_GETCARETINDEX, 0, 0));
}
