#pragma once
// A note is its window: the text, the look, the place and the flags live here and nowhere else. The window
// paints itself, its controls are parts of it and no windows of their own.
//
// It knows nothing of the store, the menu or the network; what it needs from around it is a NoteHost.

#include <wx/frame.h>
#include <wx/geometry.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "dialogs/frmDialog.h"
#include "model/Note.h"
#include "model/NoteLayout.h"
#include "tray/TrayMenu.h"

class frmNote;
class NoteAccess;
class NoteGesture;
class Notification;

// What a note asks of the program around it.
class NoteHost {
  public:
    virtual ~NoteHost() = default;
    virtual void SaveNotes() = 0;
    virtual void ApplyForeground() = 0;
    virtual void ForgetMinimizedNote(frmNote& note) = 0;
    virtual void ShowPopupMenu(frmNote& note) = 0;  // at the mouse
    virtual void ShowPopupMenuAt(frmNote& note, const wxPoint& onScreen) = 0;
    // Gives the keyboard to the next note that is shown, or to the one before.
    virtual void FocusNextNote(frmNote& note, bool forward) = 0;
    virtual void EditNote(frmNote& note) = 0;
    // The same menu where the notification area shows it itself: as it is now, and an entry chosen from it.
    virtual std::vector<TrayMenuEntry> TrayMenu(const frmNote&) { return {}; }
    virtual void RunFromTrayMenu(frmNote&, int) {}
};

class frmNote : public wxFrame {
  public:
    // A hidden note: yellow, empty, 12 points, left-aligned.
    explicit frmNote(NoteHost& host);
    ~frmNote() override;

    // The properties. Setting one applies it at once and does not save, Foreground excepted.
    void AutoSize();  // gives the window the size that the text needs
    bool Foreground() const { return foreground_; }
    void Foreground(bool on);  // also saves and re-stacks all notes
    bool HiddenForeground();   // applies the stored flag by way of Foreground and returns false
    void HiddenForeground(bool on) { foreground_ = on; }
    std::int32_t Color() const { return color_; }
    void Color(std::int32_t code);
    const std::wstring& Text() const { return lblMessage_.caption; }
    void Text(const std::wstring& text);
    std::wstring TextCleaned() const;
    std::wstring ShortText() const;  // its beginning, 55 characters and " ..." at most
    bool Minimized() const { return minimized_; }
    void Minimized(bool on);
    bool FontNoteBold() const { return lblMessage_.bold; }
    void FontNoteBold(bool on);
    bool FontNoteItalic() const { return lblMessage_.italic; }
    void FontNoteItalic(bool on);
    bool FontNoteUnderlined() const { return lblMessage_.underlined; }
    void FontNoteUnderlined(bool on);
    std::int32_t FontNoteSize() const { return lblMessage_.size; }
    void FontNoteSize(std::int32_t points);  // kept as it is; drawn within 8 to 25
    std::int32_t FontNoteAlignment() const { return lblMessage_.alignment; }
    void FontNoteAlignment(std::int32_t code);  // any other than the three shows as left
    const std::wstring& CreationTime() const { return lblZeit_; }
    void CreationTime(const std::wstring& text);

    // The note's place in twips, as stored. Where the window really stands may differ when that is impossible
    // on the screens of now; only the user's gestures and these setters change what is stored.
    double Left() const { return left_; }
    double Top() const { return top_; }
    double Width() const { return width_; }
    double Height() const { return height_; }
    void PlaceAsNew();  // at the next place for new notes, beside the one before
    void PlaceAt(double left, double top);
    void SizeTo(double width, double height);
    void Place(double left, double top, double width, double height);  // both at once
    // Puts the window, shown or not, where the screens of now can show it: to its stored place, or onto the
    // nearest screen while no screen shows enough of that one. Leaves a window alone that is being dragged.
    void PlaceOnScreens();

    // The key that names the note inside the running program; the store gives it.
    std::int32_t NoteKey() const { return noteKey_; }
    void NoteKey(std::int32_t key) { noteKey_ = key; }

    // Shows the note above or among the other windows as its foreground flag says, without activating it.
    // A minimized note stays minimized.
    void ShowStacked();

    // Puts the note in front of others of its height without activating it. Dialogs stay above it.
    void BringToFront();

    // Gives the note the keyboard and shows that it has it. What the keys do stands in NoteKeys.h.
    void TakeFocus();
    // The part that has the keyboard while the note has it; Body stands for the text.
    NotePart Focus() const { return focus_.value_or(NotePart::Body); }
    // Presses a control; opens the note in its dialog where the part is none.
    void PressPart(NotePart part);

    // Takes the note's icon and window away and destroys the note as soon as its events are through.
    void Unload();
    // The same at once. Only for the end of the program, when no event of the note can be under way.
    void UnloadAtEnd();

    // The note's own icon while it is minimized, else null.
    const Notification* TrayIcon() const { return notNotizIcon_.get(); }

    // The parts as laid out now, for tests and for whoever describes the window.
    const NoteLayout& Layout() const { return layout_; }

    // What the window inherits from its platform's theme; asking the theme anew for every paint is dear.
    wxVisualAttributes GetDefaultAttributes() const override;

  private:
    wxDECLARE_EVENT_TABLE();

    struct Message {
        std::wstring caption;
        std::int32_t size = kDefaultFontSize;
        std::int32_t alignment = kAlignLeft;
        bool bold = false, italic = false, underlined = false;
    };

    wxFont MessageFont() const;
    void RenewIcon();
    wxRect StoredRect() const;
    wxRect ShownRect() const;  // as the screens of now can show it
    void ArrangeParts(const wxSize& pixels);
    void Hover(NotePart part);
    void SetPointer(Pointer pointer);
    void Click(NotePart part);
    void FinishGesture(const wxRect& before, const wxRect& after);
    void StorePlace(const wxRect& before, const wxRect& after);
    // Runs it as an event of its own, when this note's handlers have returned: what it opens may delete the
    // note.
    void Later(std::function<void(NoteHost& host, frmNote& note)> call);

    void ShowFocus(std::optional<NotePart> part);
    void StepBy(int x, int y, int width, int height);
    void SaveSteps();
    wxPoint MenuPoint() const;
    void OnKey(wxKeyEvent& event);
    void OnKeyUp(wxKeyEvent& event);
    void OnActivate(wxActivateEvent& event);

    wxPoint2DDouble ToTwips(const wxPoint& pixels) const;
    void OnPaint(wxPaintEvent& event);
    void OnSize(wxSizeEvent& event);
    void OnMotion(wxMouseEvent& event);
    void OnLeave(wxMouseEvent& event);
    void OnLeftDown(wxMouseEvent& event);
    void OnLeftUp(wxMouseEvent& event);
    void OnLeftDoubleClick(wxMouseEvent& event);
    void OnRightUp(wxMouseEvent& event);
    void OnClose(wxCloseEvent& event);

    NoteHost& host_;
    Message lblMessage_;
    std::wstring lblZeit_;
    std::int32_t color_ = kYellow;
    std::int32_t noteKey_ = 0;
    bool foreground_ = false;
    bool minimized_ = false;
    double left_ = 0, top_ = 0, width_ = 0, height_ = 0;
    NoteLayout layout_;
    wxSize arrangedFor_;
    NotePart hovered_ = NotePart::Body;
    NotePart pressed_ = NotePart::Body;  // cmdMinimize or chkForeground while it is held down
    Pointer pointer_ = Pointer::Default;
    std::optional<NotePart> focus_;  // shown from the first key on until the mouse is used
    bool stepped_ = false;           // moved or sized by keys since the last save
    std::unique_ptr<NoteAccess> access_;
    std::unique_ptr<NoteGesture> gesture_;
    std::optional<DialogsAbove> dialogsAbove_;    // while it stands above other windows
    std::unique_ptr<Notification> notNotizIcon_;  // from the first time that the note is minimized
};
