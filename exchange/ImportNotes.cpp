#include "exchange/ImportNotes.h"

#include <functional>

#include "base/ByteSource.h"
#include "base/FileName.h"
#include "dialogs/Message.h"
#include "dialogs/OneDialog.h"
#include "dialogs/Wait.h"
#include "exchange/ExportedNote.h"
#include "exchange/ImportFile.h"
#include "exchange/KeptNotes.h"
#include "exchange/PatientRead.h"
#include "exchange/frmImport.h"
#include "notes/NoteStore.h"

namespace {

// Takes in what was read; whether that was all.
bool TakeIn(NoteStore& store, const ReadNotes& read) {
    bool complete = read.complete;
    // Neither saved nor stacked one by one: both follow once for all notes of an import.
    for (const Note& note : read.notes) {
        // It is shown whole, but only its beginning would be there after a restart.
        if (!ComesBack(note.text) && !KeepLongNote(note).Kept()) complete = false;
        // Of records the place counts as it is. A text has none.
        if (read.records)
            store.AdoptNote(note);
        else
            store.AdoptKeptNote(note);
    }
    return complete;
}

}  // namespace

bool ImportNotes(NoteStore& store, const std::wstring& fileName) {
    const auto read = [path = FilePath(fileName)] {
        return ReadNotesOf(path, kMostRecords, [](std::size_t) { return true; });
    };
    // Nobody waits at a window who could be asked, and the next file may answer.
    const std::optional<ReadNotes> notes = ReadPatiently<ReadNotes>(read, [] { return false; });
    return notes && TakeIn(store, *notes);
}

std::wstring ImportFailureText(const std::wstring& fileName, const std::wstring& reason) {
    std::wstring text =
        L"Beim Importieren der Notizen aus " + ShownFileName(fileName) + L" ist ein Fehler aufgetreten.";
    if (!reason.empty()) text += L"\r\n\r\n" + reason;
    return text;
}

void ShowImportFailure(const std::wstring& fileName, const std::wstring& reason) {
    ShowMessage(ImportFailureText(fileName, reason), kCritical, kImportFailure);
}

void ImportNotes(NoteStore& store) {
    static OneDialog once;
    if (once.BroughtForward()) return;
    const OneDialog::Opened<frmImport> dialog(once);
    dialog->OnConfirmed = [&] {
        const std::filesystem::path path = dialog->File();
        const auto read = [path, chosen = dialog->ChosenRecords()] {
            // A file that has gone since it was listed brings no notes, and no message.
            if (!IsFile(path)) return ReadNotes{.notes = {}, .complete = true};
            return ReadNotesOf(path, chosen.size(), [&](std::size_t index) { return chosen[index]; });
        };
        const std::optional<ReadNotes> notes =
            ReadPatiently<ReadNotes>(read, [&] { return WaitsOnFor(path); });
        if (IsQuitting()) return;
        const bool failed = notes && !TakeIn(store, *notes);
        store.SaveNotes();
        store.ApplyForeground();
        if (failed) ShowImportFailure(FileName(path));
    };
    dialog->ShowModal();
}
