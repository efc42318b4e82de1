#pragma once
// The hidden main window. It carries the program's icon in the notification area and the menu with all
// commands, which opens from that icon and, for a particular note, from the note.

#include <wx/frame.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "app/IconTip.h"
#include "app/MenuModel.h"
#include "tray/Notification.h"

class FirstHint;
class frmNote;
class NoteStore;

class frmStart : public wxFrame {
  public:
    // quit: what "Beenden" does.
    frmStart(NoteStore& store, std::function<void()> quit);
    ~frmStart() override;

    // Opens the menu at a place on the screen, else at the mouse, and returns when it has closed and the
    // chosen command has run. Does nothing while the menu is open already.
    void ShowPopupMenu(frmNote* note, std::optional<wxPoint> at = std::nullopt);

    // The note for which the menu was last opened; null when that was none, or when it is gone.
    frmNote* PopupNote() const;

    // Does what choosing the item does. Without effect for one that is no available command.
    void RunCommand(MenuItem item);

    // The menu for a note, or for the program's icon, as it is now, and what choosing an entry of it does
    // where the notification area shows it itself. Nothing is done while the program's own menu is open.
    std::vector<TrayMenuEntry> DescribeMenu(const frmNote* note) const;
    void RunFromTrayMenu(frmNote* note, int id);

    // Gives an item its command; until then it is shown disabled.
    void AddCommand(MenuItem item, std::function<void()> command);
    // Takes it away again.
    void RemoveCommand(MenuItem item);

    // The icon and its tip say how it stands.
    void ShowState(const ProgramState& state);

    // Tells somebody who has never used the program what the icon is good for, once that has found its place.
    void GreetNewcomer();

    Notification notIcon;

  private:
    frmNote* ActivateApplication();  // the note that is on top then, if any
    void RunForPopupNote(MenuItem item);
    void ToggleAutostart();
    void DeletePopupNote();
    void TogglePopupNoteForeground();

    NoteStore& store_;
    std::map<MenuItem, std::function<void()>> commands_;
    std::optional<std::int32_t> popupNoteKey_;
    bool menuOpen_ = false;
    std::unique_ptr<FirstHint> hint_;  // until the icon is used
};
