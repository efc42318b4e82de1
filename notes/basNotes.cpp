#include "notes/basNotes.h"

#include <utility>

#include "base/DateText.h"
#include "dialogs/Message.h"
#include "dialogs/OneDialog.h"
#include "dialogs/Wait.h"
#include "notes/NoteStore.h"
#include "notes/frmProperties.h"

namespace {

// For new notes and for those that there are.
OneDialog properties;

// What is being written in the dialog, until it has become a note or lies in the bin.
class Writing {
  public:
    Writing(const NoteStore& store, const frmProperties& dialog, Note note)
        : store_(store), dialog_(dialog), note_(std::move(note)) {
        current = this;
    }
    ~Writing() {
        current = nullptr;
        Drop();
    }
    Writing(const Writing&) = delete;
    Writing& operator=(const Writing&) = delete;

    void Done() { done_ = true; }
    // The text, if there was one and it could not be kept.
    std::optional<UnkeptText> Keep() {
        if (done_ || !dialog_.TextChanged()) return std::nullopt;
        Note written = dialog_.Written(note_);
        if (written == binned_) return std::nullopt;
        KeepResult result = store_.OnDelete ? store_.OnDelete(written) : KeepResult();
        if (!result.Kept()) return UnkeptText{std::move(written), std::move(result)};
        binned_ = std::move(written);
        return std::nullopt;
    }
    // It does not become a note.
    void Drop() {
        const std::optional<UnkeptText> unkept = Keep();
        if (unkept && store_.OnUnbinned) store_.OnUnbinned(unkept->note, true, unkept->why);
        Done();
    }

    static inline Writing* current = nullptr;

  private:
    const NoteStore& store_;
    const frmProperties& dialog_;
    const Note note_;
    std::optional<Note> binned_;
    bool done_ = false;
};

Note WrittenNow() { return {.creationTime = CurrentCreationTime()}; }

}  // namespace

std::optional<UnkeptText> KeepTextBeingWritten() {
    return Writing::current ? Writing::current->Keep() : std::nullopt;
}

void NewNote(NoteStore& store) {
    if (properties.BroughtForward()) return;
    const OneDialog::Opened<frmProperties> dialog(properties, L"Neue Notiz");
    Writing writing(store, *dialog, WrittenNow());
    dialog->OnConfirmed = [&] {
        store.AddNote(dialog->Written(WrittenNow()));
        writing.Done();
    };
    dialog->ShowModal();
}

void EditNote(NoteStore& store, frmNote& note) {
    if (properties.BroughtForward()) return;
    const OneDialog::Opened<frmProperties> dialog(properties, L"Notiz bearbeiten");
    dialog->Fill(note.Content());
    dialog->PlaceNear(note.WindowRect());
    const std::int32_t key = note.NoteKey();
    Writing writing(store, *dialog, note.Content());
    dialog->OnConfirmed = [&] {
        frmNote* edited = store.Find(key);
        if (!edited) {
            writing.Drop();
            ShowMessage(
                L"Die bearbeitete Notiz ist zwischenzeitlich gelöscht worden.\r\nDie Änderungen werden "
                L"verworfen.",
                kCritical, L"Notiz zwischenzeitlich gelöscht");
            return;
        }
        edited->Content(dialog->Written(edited->Content()));
        edited->AutoSize();
        store.SaveNotes();
        writing.Done();
    };
    dialog->ShowModal();
}
