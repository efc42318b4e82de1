#include "exchange/basImport.h"

#include <functional>

#include "base/FileName.h"
#include "dialogs/OneDialog.h"
#include "dialogs/basMessage.h"
#include "exchange/ExportFile.h"
#include "exchange/frmImport.h"
#include "notes/NoteStore.h"

namespace {

// Takes in those of the first `count` records that are wanted, at most up to the first one without text.
bool TakeInFile(NoteStore& store, const std::filesystem::path& path, std::size_t count,
                const std::function<bool(std::size_t index)>& wanted) {
    std::ifstream file = OpenExport(path);
    if (!file) return false;
    std::vector<ExportedNote> records;
    std::size_t characters = 0;
    ExportReader reader(file);
    for (std::size_t i = 0; i < count; ++i) {
        if (!wanted(i)) {
            if (reader.PassOver(1).empty()) break;
            continue;
        }
        ExportedNote record = reader.Next();
        if (file.bad() || record.Text.empty()) break;
        characters += record.Text.size() + record.CreationTime.size();
        if (records.size() == kMostImportedNotes || characters > kMostImportedCharacters) return false;
        records.push_back(std::move(record));
    }
    // Neither saved nor stacked one by one: both follow once for all notes of an import.
    for (const ExportedNote& record : records) store.AdoptNote(ToNote(record));
    return !file.bad();
}

}  // namespace

bool ImportNotes(NoteStore& store, const std::wstring& fileName) {
    return TakeInFile(store, FilePath(fileName), kMostRecords, [](std::size_t) { return true; });
}

void ImportNotes(NoteStore& store) {
    static OneDialog once;
    if (once.BroughtForward()) return;
    const OneDialog::Opened<frmImport> dialog(once);
    dialog->OnConfirmed = [&] {
        const std::vector<bool> chosen = dialog->ChosenRecords();
        const std::filesystem::path path = dialog->File();
        // A file that has gone since it was listed brings no notes, and no message.
        const bool failed = IsFile(path) && !TakeInFile(store, path, chosen.size(),
                                                        [&](std::size_t index) { return chosen[index]; });
        store.SaveNotes();
        store.ApplyForeground();
        if (failed) {
            ShowMessage(L"Beim Importieren der Notizen aus " + ShownFileName(FileName(path)) +
                            L" ist ein Fehler aufgetreten.",
                        kCritical, L"Fehler beim Importieren");
        }
    };
    dialog->ShowModal();
}
