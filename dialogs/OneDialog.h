#pragma once
// What the user can have open only once: a dialog, or an operation that shows one dialog after another. There
// is one object of this class for each of them, as long as the program runs. Who is asked for the dialog
// calls BroughtForward first and opens another one only when that returns false.

#include <wx/app.h>
#include <wx/event.h>
#include <wx/weakref.h>

#include <utility>

#include "dialogs/DialogWindow.h"

class OneDialog {
  public:
    // Brings the dialog to the front if it is open, or else what its caller still waits for. False when it is
    // not open and the operation not under way.
    bool BroughtForward() const {
        // One that was closed before GTK had come to show it counts as shown until wxWidgets deletes it.
        const bool open =
            uses_ > 0 || (dialog_ && dialog_->IsShown() && !wxTheApp->IsScheduledForDestruction(dialog_));
        if (open && dialog_) dialog_->Raise();
        return open;
    }

    // Holds a dialog that nobody waits for: it counts as open while it is on the screen.
    void Hold(DialogWindow& dialog) { dialog_ = &dialog; }

    // An operation that is under way as long as this lives, also between its dialogs.
    class Operation {
      public:
        explicit Operation(OneDialog& one) : one_(one) { ++one_.uses_; }
        ~Operation() { --one_.uses_; }
        Operation(const Operation&) = delete;
        Operation& operator=(const Operation&) = delete;

      private:
        OneDialog& one_;
    };

    // Makes the dialog from the arguments and destroys it at the end of the scope.
    template <class Dialog>
    class Opened {
      public:
        template <class... Arguments>
        explicit Opened(OneDialog& one, Arguments&&... arguments)
            : operation_(one), dialog_(new Dialog(std::forward<Arguments>(arguments)...)) {
            one.Hold(*dialog_);
        }
        ~Opened() { dialog_->Destroy(); }
        Dialog* operator->() const { return dialog_; }
        Dialog& operator*() const { return *dialog_; }

      private:
        const Operation operation_;
        Dialog* const dialog_;
    };

  private:
    wxWeakRef<DialogWindow> dialog_;  // the last one; it may have gone from the screen
    int uses_ = 0;
};
