#pragma once
// All notes that exist: an ordered collection of open note windows and its image in the registry. Every
// change rewrites the whole image, so the subkeys stay numbered without gaps and a crash finds either the
// image before the change or the one after it.

#include <wx/event.h>
#include <wx/stopwatch.h>
#include <wx/timer.h>
#include <wx/weakref.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "model/StoredImage.h"
#include "notes/ScreenWatch.h"
#include "notes/frmNote.h"
#include "registry/KeepResult.h"

// Unloads the window of a note that is given up: hides its icon, then destroys it.
struct NoteUnloader {
    void operator()(frmNote* note) const;
};
using NotePtr = std::unique_ptr<frmNote, NoteUnloader>;

class NoteStore {
  public:
    explicit NoteStore(NoteHost& host);

    // Makes the windows of all notes that are kept, hidden still, and fills the address book. When nothing
    // could be read at first and it is called again later, notes and entries that were made meanwhile follow
    // those that were kept.
    void LoadNotes();
    // Keeps everything: the notes, the autostart flag and the address book. OnSaved hears of it.
    KeepResult SaveNotes();
    // The same without a word to anybody and without touching a window.
    KeepResult WriteImage();
    // Whether all of it is kept as it is now; also when a save failed that had nothing to change.
    bool AllKept() const { return kept_ == Digest(); }

    // What a load would give of what was last kept, as a number (DigestOf): the same at the next start,
    // unless somebody else has written meanwhile.
    std::uint64_t Stored() const { return stored_; }

    // Makes the window of a new note under the next key, at the next place for new notes and in the size that
    // the text needs, shows it and saves. A note that could not be kept is there all the same, as unsaved
    // work.
    frmNote& AddNote(const Note& content);
    // The same for a note whose sender waits for the answer, another computer or whoever gave a command: one
    // that could not be kept, with all of its text (OnLongText), does not stay, and whatever else is unsaved
    // stays so. Of many that come in quick succession the first is shown at once and the others together, at
    // a pause or after two seconds.
    KeepResult AddNoteIfKept(const Note& content);
    // Lets a note disappear that was just added: nothing is saved, and it goes into no bin.
    void TakeBack(frmNote& note);
    // Takes an imported note in under the next key, at its own place; neither shows nor saves it.
    frmNote& AdoptNote(const Note& content);
    // The same for a note that the program has kept itself: one that never was on the screen has no place
    // yet, and gets that of a new note.
    frmNote& AdoptKeptNote(const Note& content);
    // Takes notes in that were deleted, at their own places, saves once and shows them. When that fails, or a
    // text that is too long for the store cannot be kept elsewhere, none of them stays.
    KeepResult RestoreNotes(const std::vector<Note>& notes);
    // Puts the note into the bin, takes its window away and saves; the reference is dead afterwards. From one
    // that is worked by keys the keyboard goes on to the next. When
    // neither the bin nor the save succeeds the note stays, and false is the result. A note that only the bin
    // has taken is back after a restart, unless a later save is kept.
    bool DeleteNote(frmNote& note);
    // Puts the notes into the bin as one, takes their windows away and saves once. When the bin fails they
    // are all still there, and the result says why.
    KeepResult DeleteTogether(const std::vector<frmNote*>& notes) {
        return DeleteInto(OnDeleteTogether, notes);
    }
    // The same for notes that nobody has written here, which go into another bin.
    KeepResult DeleteFlood(const std::vector<frmNote*>& notes) { return DeleteInto(OnDeleteFlood, notes); }
    void UnloadAllNotes();  // only at the end of the program

    void MinimizeAll();
    void UnMinimizeAll();
    void ForgetMinimizedNote(const frmNote& note);
    // Gives each note its height among other windows and shows the hidden ones but for the minimized: some at
    // once, the others from the event loop, so that the first are there to be used while the last are still
    // to come.
    void ApplyForeground();
    // The same for notes that were just loaded. Then calls `then`.
    void ShowNotes(std::function<void()> then);
    // Puts every note where the screens of now can show it. Happens by itself when they change.
    void PlaceOnScreens();

    // Whom its notes ask.
    NoteHost& Host() const { return host_; }

    std::size_t CountNotes() const { return notes_.size(); }
    std::size_t CountVisibleNotes() const;
    // Of the notes that frmNote::Untouched is true for.
    struct UntouchedNotes {
        std::size_t notes = 0, characters = 0;
    };
    UntouchedNotes CountUntouchedNotes() const;
    std::size_t CountMinimizedByCommand() const;

    // The next note in the store's order that is not minimized, or the one before; the order is a circle. The
    // note itself when there is no other.
    frmNote& NextShown(frmNote& note, bool forward) const;

    // Gives the keyboard to the note of that key or, when that one is not on the screen any more, to the next
    // that is. showing: as frmNote::TakeFocus has it.
    void GiveKeyboard(std::int32_t noteKey, bool showing) const;
    // What gives it to this note later, whatever has become of it then.
    std::function<void()> KeyboardTo(const frmNote& note) const;

    // The note of that key, or null when it is gone.
    frmNote* Find(std::int32_t noteKey) const;
    const std::vector<NotePtr>& Notes() const { return notes_; }
    // What they hold now, in that order.
    std::vector<Note> CopyNotes() const;

    bool AutostartEnabled = false;

    // Keeps the whole text elsewhere: called, if set, for a note in the registry with more text than is read
    // back. There the text stays when this fails.
    std::function<KeepResult(const Note& note)> OnLongText;
    // The bin: called for what goes into it, before it is gone, if set. Must not throw.
    std::function<KeepResult(const Note& note)> OnDelete;
    // The same for notes that go together, and for those of a flood.
    using BinOfMany = std::function<KeepResult(const std::vector<Note>& notes)>;
    BinOfMany OnDeleteTogether, OnDeleteFlood;
    // Called, if set, for a note that did not get into the bin: it has gone all the same, or it stays, and
    // why.
    std::function<void(const Note& note, bool gone, const KeepResult& why)> OnUnbinned;
    // Called after every save with its result, if set; a failure that concerns no work of the user, because
    // nothing has changed or somebody else is told, does not count as one.
    std::function<void(const KeepResult& result)> OnSaved;

    // Has a function called when notes may have come, gone or changed, as long as it lives. The function is
    // called within the change, and leaves the notes alone.
    class Watch {
      public:
        Watch(NoteStore& store, std::function<void()> changed);
        ~Watch();
        Watch(const Watch&) = delete;
        Watch& operator=(const Watch&) = delete;

      private:
        friend class NoteStore;
        NoteStore& store_;
        const std::function<void()> changed_;
    };

  private:
    NotePtr MakeNote(const Note& content, std::int32_t key);
    NotePtr MakeNewNote(const Note& content);
    // Where new notes go, in the size that the text needs: where it covers as little as possible of those
    // that are on the screen or come there.
    void PlaceAsNew(frmNote& note);
    std::vector<const Note*> Contents() const;
    std::uint64_t Digest(Digested how = Digested::Exactly) const;
    void Heard(const KeepResult& result);
    void TellOfChange() const;
    // Keeps a note whose text the store alone would not give back elsewhere (OnLongText), if that is set.
    KeepResult KeepLong(const Note& note) const;
    KeepResult DeleteInto(const BinOfMany& bin, const std::vector<frmNote*>& notes);
    void Remove(frmNote& note);
    // Who sends many notes one after the other waits for the disk only, not for the display.
    void ShowArrived(frmNote& note);
    // At once, or while others are still coming to the screen, after them. Then calls `then`, if set.
    void ShowByAndBy(const std::vector<frmNote*>& notes, std::function<void()> then = {});
    void ShowNextNotes();
    std::vector<frmNote*> InStackingOrder() const;

    NoteHost& host_;
    std::vector<NotePtr> notes_;
    std::vector<const Watch*> watches_;
    struct ToShow {
        std::deque<wxWeakRef<frmNote>> notes;
        std::vector<std::function<void()>> then;
        int atOnce = 10;
    };
    std::shared_ptr<ToShow> toShow_;           // while notes are being shown
    std::vector<wxWeakRef<frmNote>> arrived_;  // behind one that was shown at once, and wait for the pause
    wxStopWatch arriving_;                     // since that one came
    wxTimer pause_;                            // runs from each that comes until they are shown
    std::int32_t lastNoteNumber_ = 0;
    std::uint64_t kept_ = Digest();  // of what was last kept
    std::uint64_t stored_ = 0;
    std::optional<std::unordered_set<std::int32_t>> minimizedByCommand_;  // by NoteKey
    ScreenWatch screens_{[this] { PlaceOnScreens(); }};
};
