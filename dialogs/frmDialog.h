#pragma once
// What all dialogs of the program share. A dialog is an ordinary window that its caller waits for: the tag is
// "waiting" until a button, Esc or the close box changes it, and the rest of the program goes on meanwhile.
// The caller reads the controls after ShowModal and then destroys the dialog.

#include <wx/dialog.h>
#include <wx/sizer.h>

#include <functional>
#include <optional>
#include <string>

class wxButton;

// While one of these lives, dialogs stay above other windows. Whoever shows a window that does so itself has
// one, since a dialog must not be behind it.
class DialogsAbove {
  public:
    DialogsAbove();
    ~DialogsAbove();
    DialogsAbove(const DialogsAbove&) = delete;
    DialogsAbove& operator=(const DialogsAbove&) = delete;

    static bool Any();
    // Puts the dialogs in front again, when that window has come to the front.
    static void Again();
};

class frmDialog : public wxDialog {
  public:
    // 1 when the dialog was confirmed, else 0. Shows it at the place given by PlaceNear, or in the middle of
    // the screen. The dialog has gone from the screen as soon as it is confirmed or cancelled; the call
    // returns when the dialogs that were opened meanwhile have gone, too.
    int ShowModal() override;

    // Called once the dialog is confirmed and has gone from the screen, at once: for what must not wait until
    // ShowModal returns.
    std::function<void()> OnConfirmed;

    // "waiting", "ok" or "cancel".
    const std::wstring& Tag() const { return tag_; }

    // Brings the newest dialog on the screen to the front and gives it the keyboard; false if there is none.
    static bool ActivateNewest();

    ~frmDialog() override;

    bool Show(bool show = true) override;
    // Brings it to the front with the keyboard; if it has gone from the screen, the newest that is there, for
    // which its caller waits.
    void Raise() override;
    bool Destroy() override;

    // Makes the dialog appear beside this rectangle of the screen (pixels) instead of in the middle.
    void PlaceNear(const wxRect& rect) { near_ = rect; }

  protected:
    // helpPage: the page that F1 opens, empty for none. resizable: with a border that can be dragged.
    frmDialog(const wxString& caption, const std::wstring& helpPage, bool resizable = false);

    // One that nobody waits for: Begin shows it, and it destroys itself when its user closes it. No other
    // dialog belongs to it, nor it to another.
    struct Alone {};
    frmDialog(Alone, const wxString& caption, const std::wstring& helpPage);

    // Shows it with the tag "waiting" and returns. It has gone from the screen as soon as the tag changes.
    void Begin();

    // Button row for the bottom of a dialog. The first one is wired to Confirm, the second to Cancel; either
    // caption may be empty to leave that button out.
    wxSizer* CreateButtons(const wxString& ok, const wxString& cancel);

    // Puts the content and the button row into the dialog with the margins that all dialogs have, and sizes
    // it. All controls exist by then: they are named after their labels. A resizable dialog can be made
    // smaller until its lists and text boxes show a few lines, and keeps the size that the user gave it
    // for the next one of its kind.
    void SetContent(wxSizer* content, wxSizer* buttons);

    // What OK does: sets the tag to "ok". Dialogs that check their fields first override it.
    virtual void Confirm();
    void SetTag(const std::wstring& tag);

    // The display on which it appears, without what the desktop keeps for itself.
    wxRect Area() const;

    wxButton* cmdOK = nullptr;
    wxButton* cmdAbbrechen = nullptr;

  private:
    frmDialog(wxWindow* owner, const wxString& caption, const std::wstring& helpPage, bool resizable);

    static wxWindow* Owner();
    // Takes it from the screen; false if it has gone before.
    bool End();
    void OnKey(wxKeyEvent& event);
    void PressDefault();
    void Resize();
    void Place();

    std::wstring tag_;
    bool begun_ = false;
    bool alone_ = false;
    std::wstring helpPage_;
    std::optional<wxRect> near_;
};

// The size of a box or a list that shows text of so many characters in so many lines, in the window's font.
wxSize RoomForText(const wxWindow& window, int characters, int lines);

// Distance between controls, and between controls and the border of a dialog, in device-independent pixels.
constexpr int kDialogMargin = 12;
constexpr int kDialogGap = 6;
