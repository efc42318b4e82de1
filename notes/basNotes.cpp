#include "notes/basNotes.h"

#include "base/DateText.h"
#include "dialogs/basMessage.h"
#include "dialogs/basWait.h"
#include "notes/NoteStore.h"
#include "notes/frmProperties.h"

namespace {

// The dialog exists once; whoever asks for it a second time gets the one that is open.
frmProperties* openDialog = nullptr;

class PropertiesSession {
  public:
    explicit PropertiesSession(const wxString& caption) : dialog_(new frmProperties(caption)) {
        openDialog = dialog_;
    }
    ~PropertiesSession() {
        openDialog = nullptr;
        dialog_->Destroy();
    }
    PropertiesSession(const PropertiesSession&) = delete;
    PropertiesSession& operator=(const PropertiesSession&) = delete;
    frmProperties* operator->() { return dialog_; }

  private:
    frmProperties* dialog_;
};

bool BringOpenDialogForward() {
    if (!openDialog) return false;
    openDialog->Raise();
    return true;
}

}  // namespace

void NewNote(NoteStore& store) {
    if (BringOpenDialogForward()) return;
    PropertiesSession dialog(L"Neue Notiz");
    dialog->OnConfirmed = [&] {
        NotePtr note = store.CreateNote();
        dialog->ApplyTo(*note);
        note->CreationTime(CurrentDateText() + L", " + CurrentTimeText());
        store.AddNote(std::move(note));
    };
    dialog->ShowModal();
}

void EditNote(NoteStore& store, frmNote& note) {
    if (BringOpenDialogForward()) return;
    PropertiesSession dialog(L"Notiz bearbeiten");
    dialog->Fill(note);
    dialog->PlaceNear(note.GetRect());
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
        dialog->ApplyTo(*edited);
        edited->AutoSize();
        store.SaveNotes();
    };
    dialog->ShowModal();
}
