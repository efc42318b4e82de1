#include "exchange/ExportNotes.h"

#include "dialogs/Message.h"
#include "dialogs/OneDialog.h"
#include "exchange/ExportFile.h"
#include "exchange/ExportPath.h"
#include "exchange/ExportedNote.h"
#include "exchange/frmExport.h"
#include "notes/NoteStore.h"

namespace {

bool WriteNotes(const NoteStore& store, const std::vector<std::int32_t>& keys,
                const std::filesystem::path& path) {
    std::fstream file = OpenForExport(path);
    if (!file) return false;
    bool written = true;
    for (std::size_t i = 0; written && i < keys.size(); ++i) {
        const frmNote* note = store.Find(keys[i]);
        written = note && WriteRecord(file, ToRecord(note->Content()));
    }
    // A full disk may show only now.
    file.close();
    return written && file.good();
}

}  // namespace

void ExportNotes(const NoteStore& store) {
    static OneDialog once;
    if (once.BroughtForward()) return;
    const OneDialog::Opened<frmExport> dialog(once, store);
    dialog->OnConfirmed = [&] {
        if (WriteNotes(store, dialog->ChosenNotes(), TypedPath(dialog->Path()))) return;
        ShowMessage(
            L"Beim Exportieren der Notiz(en) ist ein Fehler aufgetreten.\r\n"
            L"Möglicherweise existiert eine zum Exportieren vorgesehene Notiz nicht mehr oder der "
            L"Dateiname ist ungültig.",
            kCritical, L"Fehler");
    };
    dialog->ShowModal();
}
