#pragma once
// What all windows of the program have in common that ask or tell the user something. Such a dialog is an
// ordinary window: it does not block the others, and the rest of the program goes on while its caller waits
// for it in ShowModal. The caller reads the controls afterwards and then destroys the dialog.

#include <wx/dialog.h>
#include <wx/sizer.h>

#include <functional>
#include <optional>
#include <string>

#include "dialogs/DialogLayout.h"

class wxButton;

// Waiting until a button, Esc or the close box has ended the dialog, then the way in which it ended.
enum class DialogState { Waiting, Ok, Cancel };

class DialogWindow : public wxDialog {
  public:
    // Shows the dialog at the place given by PlaceNear, or in the middle of the screen, and lets events run
    // until it has ended: 1 when it was confirmed, else 0, also when the program quits. It has gone from the
    // screen as soon as it is confirmed or cancelled; the call returns when the dialogs that were opened
    // meanwhile have gone, too.
    int ShowModal() override;

    // Called once the dialog is confirmed and has gone from the screen, at once: for what must not wait until
    // ShowModal returns.
    std::function<void()> OnConfirmed;

    DialogState State() const { return state_; }
    // The state in words: "waiting", "ok" or "cancel".
    std::wstring Tag() const;

    ~DialogWindow() override;

    bool Show(bool show = true) override;
    // Brings it to the front with the keyboard; if it has gone from the screen, the newest dialog that is
    // there, because the caller of this one still waits for that.
    void Raise() override;
    bool Destroy() override;

    // Makes the dialog appear beside this rectangle of the screen (pixels) instead of in the middle.
    void PlaceNear(const wxRect& rect) { near_ = rect; }

  protected:
    // resizable: with a border that can be dragged. The next dialog of its class gets the size that the user
    // gave it.
    explicit DialogWindow(const wxString& caption, bool resizable = false);

    // A dialog that nobody waits for: Begin shows it, and it destroys itself when its user closes it. No
    // other dialog belongs to it, nor it to another.
    struct Alone {};
    DialogWindow(Alone, const wxString& caption, bool resizable = false);

    // Shows it and returns. It has gone from the screen as soon as it ends.
    void Begin();

    // Button row for the bottom of a dialog. The first button confirms, the second cancels; either caption
    // may be empty to leave that button out.
    wxSizer* CreateButtons(const wxString& ok, const wxString& cancel);

    // Arranges the content and the button row as LayOutDialog does, and names all controls after their
    // labels.
    void SetContent(wxSizer* content, wxSizer* buttons);

    // What OK does: ends the dialog with Ok. Dialogs that check their fields first override it.
    virtual void Confirm();
    // Takes the dialog from the screen, if it is there, and lets ShowModal return. result: not Waiting.
    void End(DialogState result);

    // Called when it has ended and gone from the screen, unless the program quits.
    virtual void Ended() {}

    // What F1 does. False when there is no help.
    virtual bool Help() { return false; }

    // The display on which it appears, without what the desktop keeps for itself.
    wxRect Area() const;

    wxButton* cmdOK = nullptr;
    wxButton* cmdAbbrechen = nullptr;

  private:
    DialogWindow(wxWindow* owner, const wxString& caption, bool resizable);

    // False if it has gone before.
    bool LeaveScreen();
    void Place();
    void OnKey(wxKeyEvent& event);
    void Later(void (DialogWindow::*action)());
    void PressDefault();
    void LeaveByKey();

    DialogState state_ = DialogState::Waiting;
    bool begun_ = false;
    bool alone_ = false;
    std::function<void()> keyboardReturn_;  // who had the keyboard before it came
    std::optional<wxRect> near_;
};
