#pragma once
// The dialogs on the screen in the order in which they came there, and how they stand to other windows. Only
// DialogWindow enters and takes out dialogs; everybody may ask for the newest.

#include <functional>

class wxDialog;

// Puts the dialog on top of the stack, when it comes to the screen. owner: the dialogs that come after it
// belong to it, so that window managers keep them above it.
void EnterDialogStack(wxDialog& dialog, bool owner);
// Takes it out, when it leaves the screen; does nothing when it is not in.
void LeaveDialogStack(wxDialog& dialog);

// The newest dialog that the next one is to belong to; null if there is none.
wxDialog* OwnerOfNextDialog();

// Brings the newest dialog on the screen to the front and gives it the keyboard; false if there is none.
bool ActivateNewestDialog();

// What opens dialogs while this object lives says who gets the keyboard back from them. When the last dialog
// goes that had the keyboard, and it was opened meanwhile, giveBack is called; without one the window manager
// decides. The innermost object counts.
class KeyboardReturn {
  public:
    explicit KeyboardReturn(std::function<void()> giveBack);
    ~KeyboardReturn();
    KeyboardReturn(const KeyboardReturn&) = delete;
    KeyboardReturn& operator=(const KeyboardReturn&) = delete;

    // Of the innermost object; empty without one.
    static const std::function<void()>& Current();

  private:
    std::function<void()> before_;
};

// As long as one of these lives, dialogs stay above other windows. A window that stays above others itself,
// such as a note with the flag for it, keeps one, since dialogs must not be behind it.
class DialogsAbove {
  public:
    DialogsAbove();
    ~DialogsAbove();
    DialogsAbove(const DialogsAbove&) = delete;
    DialogsAbove& operator=(const DialogsAbove&) = delete;

    static bool Any();
    // Puts the dialogs in front again; to be called when that window has come to the front.
    static void Again();
};
