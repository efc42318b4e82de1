#pragma once
// What a note window asks of the program around it.

#include <wx/gdicmn.h>

#include <optional>
#include <string>
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
    // Does so for a note that goes from the screen with the keyboard.
    virtual void PassKeyboardOn(frmNote& note) = 0;
    virtual void EditNote(frmNote& note) = 0;
    // Opens the window that finds notes.
    virtual void FindNotes(frmNote& note) = 0;
    // Brings back what was deleted last.
    virtual void BringBackDeleted() = 0;
    // Opens a web or mail address (TextLinks.h) with the user's program for it.
    virtual void OpenLink(const std::wstring& address) = 0;
    // What the user gives the program by the clipboard or by dropping it: a text becomes a new note, files
    // are imported. Who could not be served is told so; AddText is true once the note is saved.
    virtual bool AddText(const std::wstring& text) = 0;
    virtual void ImportFiles(const std::vector<std::wstring>& fileNames) = 0;
    // The same menu where the notification area shows it itself: as it is now, and an entry chosen from it.
    virtual std::vector<TrayMenuEntry> TrayMenu(const frmNote&) { return {}; }
    virtual void RunFromTrayMenu(frmNote&, int) {}
};
