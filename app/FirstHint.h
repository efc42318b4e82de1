#pragma once
// What somebody reads who starts the program for the first time: a few words in a small window beside the
// program's icon. It takes no keyboard and goes by itself after some seconds, at a click, or when there is a
// note.

#include <wx/popupwin.h>
#include <wx/timer.h>
#include <wx/weakref.h>

#include <functional>
#include <optional>

#include "notes/NoteStore.h"

class wxWindow;

// Whether nothing was ever kept, in whatever run; false while that cannot be told.
bool IsFirstStart();

class FirstHint : private wxTimer {
  public:
    // Shows the window in a moment, when icons have found their places, unless there is a note by then. owner
    // and store: outlive this object. place: where the icon is then; nothing where nobody knows that.
    FirstHint(wxWindow& owner, NoteStore& store, std::function<std::optional<wxRect>()> place);
    // Takes it away.
    ~FirstHint() override;

  private:
    void Notify() override;
    void Show();
    void End();

    wxWindow& owner_;
    const std::function<std::optional<wxRect>()> place_;
    const NoteStore::Watch notes_;
    wxWeakRef<wxPopupWindow> window_;
};
