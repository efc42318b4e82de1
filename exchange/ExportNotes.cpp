#include "exchange/ExportNotes.h"

#include "base/NewFile.h"
#include "dialogs/Message.h"
#include "dialogs/OneDialog.h"
#include "exchange/ExportPath.h"
#include "exchange/ExportedNote.h"
#include "exchange/frmExport.h"
#include "model/KeepReason.h"
#include "notes/NoteStore.h"

namespace {

struct Outcome {
    bool complete = true;    // all notes were there, and fit a record
    std::error_code failed;  // then the file is as it was
};

// Writes the notes over the beginning of the file; those before the first that is not there, or does not fit.
Outcome WriteNotes(const NoteStore& store, const std::vector<std::int32_t>& keys,
                   const std::filesystem::path& path) {
    Outcome outcome;
    std::string records;
    for (std::size_t i = 0; outcome.complete && i < keys.size(); ++i) {
        const frmNote* note = store.Find(keys[i]);
        outcome.complete = note && WriteRecord(records, ToRecord(note->Content()));
    }
    outcome.failed = SaveFile(path, records, Rest::Keep);
    return outcome;
}

}  // namespace

void ExportNotes(const NoteStore& store) {
    static OneDialog once;
    if (once.BroughtForward()) return;
    const OneDialog::Opened<frmExport> dialog(once, store);
    dialog->OnConfirmed = [&] {
        const auto [complete, failed] = WriteNotes(store, dialog->ChosenNotes(), TypedPath(dialog->Path()));
        if (complete && !failed) return;
        std::wstring text =
            L"Beim Exportieren der Notiz(en) ist ein Fehler aufgetreten.\r\n"
            L"Möglicherweise existiert eine zum Exportieren vorgesehene Notiz nicht mehr oder der "
            L"Dateiname ist ungültig.";
        if (const std::wstring reason = FileReasonText(failed); !reason.empty()) text += L"\r\n\r\n" + reason;
        ShowMessage(text, kCritical, L"Fehler");
    };
    dialog->ShowModal();
}
