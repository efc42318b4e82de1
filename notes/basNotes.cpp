#include "notes/basNotes.h"

#include "base/DateText.h"
#include "dialogs/OneDialog.h"
#include "dialogs/basMessage.h"
#include "dialogs/basWait.h"
#include "notes/NoteStore.h"
#include "notes/frmProperties.h"

namespace {

// For new notes and for those that there are.
OneDialog properties;

}  // namespace

void NewNote(NoteStore& store) {
    if (properties.BroughtForward()) return;
    const OneDialog::Opened<frmProperties> dialog(properties, L"Neue Notiz");
    dialog->OnConfirmed = [&] {
        Note note = dialog->Written({});
        note.creationTime = CurrentDateText() + L", " + CurrentTimeText();
        store.AddNote(note);
    };
    dialog->ShowModal();
}

void EditNote(NoteStore& store, frmNote& note) {
    if (properties.BroughtForward()) return;
    const OneDialog::Opened<frmProperties> dialog(properties, L"Notiz bearbeiten");
    dialog->Fill(note.Content());
    dialog->PlaceNear(note.WindowRect());
    const std::int32_t key = note.NoteKey();
    dialog->OnConfirmed = [&] {
        frmNote* edited = store.Find(key);
        if (!edited) {
            ShowMessage(
                L"Die bearbeitete Notiz ist zwischenzeitlich gelöscht worden.\r\nDie Änderungen werden "
                L"verworfen.",
                kCritical, L"Notiz zwischenzeitlich gelöscht");
            return;
        }
        edited->Content(dialog->Written(edited->Content()));
        edited->AutoSize();
        store.SaveNotes();
    };
    dialog->ShowModal();
}
