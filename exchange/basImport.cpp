#include "exchange/basImport.h"

#include <functional>

#include "base/FileName.h"
#include "dialogs/OneDialog.h"
#include "dialogs/basMessage.h"
#include "exchange/ExportFile.h"
#include "exchange/frmImport.h"
#include "notes/NoteStore.h"

namespace {

// What a window shows of a text, and what the registry gives back of it, ends at the first NUL.
std::wstring Shown(const std::wstring& text) { return text.substr(0, text.find(L'\0')); }

// The flag is only stored, without the saving and stacking that setting it on a note in the store brings:
// both follow once for all notes of an import.
void TakeIn(NoteStore& store, const ExportedNote& record) {
    NotePtr note = store.CreateNote();
    note->Text(Shown(record.Text));
    note->CreationTime(Shown(record.CreationTime));
    note->Color(record.Color);
    note->Place(record.Left, record.Top, record.Width, record.Height);
    note->FontNoteSize(record.FontNoteSize);
    note->FontNoteBold(record.FontNoteBold);
    note->FontNoteItalic(record.FontNoteItalic);
    note->FontNoteUnderlined(record.FontNoteUnderlined);
    note->FontNoteAlignment(record.FontNoteAlignment);
    note->HiddenForeground(record.Foreground);
    store.AdoptNote(std::move(note));
}

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
    for (const ExportedNote& record : records) TakeIn(store, record);
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
