#pragma once
// What the program gives its notes: the store, the menu, the properties dialog and, once they are deleted, a
// place from which they can be taken back.

#include <functional>

#include "notes/NoteStore.h"

class NoteServices : public NoteHost {
  public:
    NoteServices();

    NoteStore& Store() { return store_; }

    // Who opens the menu for a note; nobody until it is set.
    std::function<void(frmNote* note)> OpenMenu;

    // While the program ends the store empties itself window by window, and its image must stay whole. So
    // nothing that a note asks for then is done.
    void SaveNotes() override;
    void ApplyForeground() override;
    void ForgetMinimizedNote(frmNote& note) override;
    void ShowPopupMenu(frmNote& note) override;
    void EditNote(frmNote& note) override;

  private:
    NoteStore store_;
};
