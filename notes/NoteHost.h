#pragma once
// What a note window asks of the program around it.

#include <wx/gdicmn.h>

#include <optional>
#include <vector>

#include "tray/TrayMenu.h"

class frmNote;

class NoteHost {
  public:
    virtual ~NoteHost() = default;
    virtual void SaveNotes() = 0;
    virtual void ApplyForeground() = 0;
    virtual void ForgetMinimizedNote(frmNote& note) = 0;
    // Opens the menu for the note at a place on the screen, else at the mouse.
    virtual void ShowPopupMenu(frmNote& note, std::optional<wxPoint> at) = 0;
    // Gives the keyboard to the next note that is shown, or to the one before.
    virtual void FocusNextNote(frmNote& note, bool forward) = 0;
    virtual void EditNote(frmNote& note) = 0;
    // Opens the window that finds notes.
    virtual void FindNotes() = 0;
    // Brings back what was deleted last.
    virtual void BringBackDeleted() = 0;
    // The same menu where the notification area shows it itself: as it is now, and an entry chosen from it.
    virtual std::vector<TrayMenuEntry> TrayMenu(const frmNote&) { return {}; }
    virtual void RunFromTrayMenu(frmNote&, int) {}
};
