#pragma once
// A note is its window: what it says, how it looks and where it stands live here and nowhere else. The window
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
#include <vector>

#include "dialogs/DialogStack.h"
#include "model/Note.h"
#include "model/NoteLayout.h"
#include "model/TextLinks.h"
#include "notes/NoteAccess.h"
#include "notes/NoteHost.h"
#include "notes/WindowPlace.h"

class NoteGesture;
class Notification;

class frmNote : public wxFrame, public ReadableNote {
  public:
    // A hidden note: yellow, empty, 12 points, left-aligned.
    explicit frmNote(NoteHost& host);
    ~frmNote() override;

    // The whole note. Setting it is setting each property, with HiddenForeground for the flag.
    const Note& Content() const override { return note_; }
    void Content(const Note& note);

    // The properties. Setting one applies it at once and does not save, Foreground excepted.
    void AutoSize();  // gives the window the size that the text needs
    bool Foreground() const { return note_.foreground; }
    void Foreground(bool on);  // also saves and re-stacks all notes
    bool HiddenForeground();   // applies the stored flag by way of Foreground and returns false
    void HiddenForeground(bool on) { note_.foreground = on; }
    std::int32_t Color() const { return note_.look.color; }
    void Color(std::int32_t code) { Set(note_.look.color, code); }
    const std::wstring& Text() const { return note_.text; }
    void Text(const std::wstring& text) { Set(note_.text, text); }
    std::wstring TextCleaned() const;
    bool Minimized() const { return minimized_; }
    void Minimized(bool on);
    void EndMinimized();  // the same as Minimized(false), for who shows the window later
    bool FontNoteBold() const { return note_.look.bold; }
    void FontNoteBold(bool on) { Set(note_.look.bold, on); }
    bool FontNoteItalic() const { return note_.look.italic; }
    void FontNoteItalic(bool on) { Set(note_.look.italic, on); }
    bool FontNoteUnderlined() const { return note_.look.underlined; }
    void FontNoteUnderlined(bool on) { Set(note_.look.underlined, on); }
    std::int32_t FontNoteSize() const { return note_.look.size; }
    void FontNoteSize(std::int32_t points) { Set(note_.look.size, points); }
    std::int32_t FontNoteAlignment() const { return note_.look.alignment; }
    void FontNoteAlignment(std::int32_t code) { Set(note_.look.alignment, code); }
    const std::wstring& CreationTime() const { return note_.creationTime; }
    void CreationTime(const std::wstring& text) { Set(note_.creationTime, text); }

    // The note's place in twips, as stored. Where the window really stands may differ when that is impossible
    // on the screens of now; only the user's gestures and these setters change what is stored.
    double Left() const { return note_.place.left; }
    double Top() const { return note_.place.top; }
    double Width() const { return note_.place.width; }
    double Height() const { return note_.place.height; }
    // In the size that the text needs, and where it covers as little as possible of these rectangles of the
    // screen.
    void PlaceAsNew(const std::vector<wxRect>& others);
    void PlaceAt(double left, double top);
    void SizeTo(double width, double height);
    void Place(const NotePlace& place);  // both at once
    // Puts the window, shown or not, where the screens of now can show it: to its stored place, or onto the
    // nearest screen while no screen shows enough of that one. Leaves a window alone that is being dragged.
    void PlaceOnScreens();
    // Where the window stands on the desktop, in pixels, or comes to stand as soon as the window manager has
    // done what it was asked for.
    wxRect WindowRect() { return windowPlace_.Now(); }

    // The key that names the note inside the running program; the store gives it.
    std::int32_t NoteKey() const { return noteKey_; }
    void NoteKey(std::int32_t key) { noteKey_ = key; }

    // The note came from another computer, and since it was shown nobody has clicked, minimized or changed it
    // or pressed a key that it knows. Whoever took it in says so of it; what the user does takes it back.
    bool Untouched() const { return untouched_; }
    void Untouched(bool on) { untouched_ = on; }

    // Shows the note above or among the other windows as its foreground flag says, without activating it.
    // A minimized note stays minimized.
    void ShowStacked();

    // Puts the note in front of others of its height without activating it. Dialogs stay above it.
    void BringToFront();

    // Gives the note the keyboard and, if `showing`, shows that it has it, which who uses the mouse does not
    // want to see. What the keys do stands in NoteKeys.h.
    void TakeFocus(bool showing = true);
    // Whether its user has last used keys on it, not the mouse.
    bool UsedByKeys() const { return usedByKeys_; }
    // The part that has the keyboard while the note has it; Body stands for the text.
    NotePart Focus() const override { return focus_.value_or(NotePart::Body); }
    void PressPart(NotePart part) override;

    // Takes the note's icon and window away and destroys the note as soon as its events are through.
    void Unload();
    // The same at once. Only for the end of the program, when no event of the note can be under way.
    void UnloadAtEnd();

    // The note's own icon while it is minimized, else null.
    const Notification* TrayIcon() const { return notNotizIcon_.get(); }

    // The parts as laid out now, for tests and for whoever describes the window.
    const NoteLayout& Layout() const override { return layout_; }

    // What the window inherits from its platform's theme; asking the theme anew for every paint is dear.
    wxVisualAttributes GetDefaultAttributes() const override;

  private:
    wxDECLARE_EVENT_TABLE();

    template <class Value>
    void Set(Value& property, const Value& value) {
        property = value;
        Changed();
    }
    void Changed();  // shows what the note is now, the place excepted
    void RenewIcon();
    void PlaceAsStored();
    wxRect StoredRect() const;
    wxRect ShownRect() const;  // as the screens of now can show it
    wxSize NaturalSize() const;
    void ShowAllOfText();
    void ArrangeParts(const wxSize& pixels);
    void Hover(NotePart part, TextLink link = {});
    void SetPointer(Pointer pointer);
    void Click(NotePart part);
    void FinishGesture(const wxRect& before, const wxRect& after);
    void StorePlace(const wxRect& before, const wxRect& after);
    // Runs it as an event of its own, when this note's handlers have returned: what it opens may delete the
    // note.
    void Later(std::function<void(NoteHost& host, frmNote& note)> call);
    void OpenMenu();

    // Addresses in the text.
    TextLink LinkAt(const wxPoint& at) const;  // empty where there is none
    bool OpensLink(const wxMouseEvent& event) const;
    void OpenLink(const std::wstring& address);
    void FollowControlKey(const wxKeyEvent& event, bool down);

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
    // Minimizes it; the keyboard goes to another note if this one has it.
    void PutAway(bool hasKeyboard);

    NoteHost& host_;
    Note note_;
    std::int32_t noteKey_ = 0;
    bool minimized_ = false;
    bool untouched_ = false;
    bool sizedElsewhere_ = false;  // its size was stored, perhaps on another computer, and not yet looked at
    bool enlarged_ = false;        // shown larger than is stored, because its text needs it
    NoteLayout layout_;
    WindowPlace windowPlace_{*this};
    wxSize arrangedFor_;
    NotePart hovered_ = NotePart::Body;
    NotePart pressed_ = NotePart::Body;  // cmdMinimize or chkForeground while it is held down
    Pointer pointer_ = Pointer::Default;
    TextLink link_;                  // below the pointer
    TextLink pressedLink_;           // while the button is held down on it
    std::optional<NotePart> focus_;  // shown from the first key on until the mouse is used
    bool usedByKeys_ = false;
    bool stepped_ = false;  // moved or sized by keys since the last save
    std::unique_ptr<NoteAccess> access_;
    std::unique_ptr<NoteGesture> gesture_;
    std::optional<DialogsAbove> dialogsAbove_;    // while it stands above other windows
    std::unique_ptr<Notification> notNotizIcon_;  // from the first time that the note is minimized
};
