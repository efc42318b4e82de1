#include "exchange/basImport.h"

#include <filesystem>
#include <fstream>

#include "base/FileName.h"
#include "exchange/ExportedNote.h"
#include "notes/NoteStore.h"

namespace {

// What a window shows of a text, and what the registry gives back of it, ends at the first NUL.
std::wstring Shown(const std::wstring& text) { return text.substr(0, text.find(L'\0')); }

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
    note->FontNoteAlignment(static_cast<std::int16_t>(record.FontNoteAlignment));
    note->HiddenForeground(record.Foreground);
    store.AdoptNote(std::move(note));
}

}  // namespace

bool ImportNotes(NoteStore& store, const std::wstring& fileName) {
    const std::filesystem::path path = FilePath(fileName);
    // A pipe or a device may never end.
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(path, unknown)) return false;
    std::ifstream file(path, std::ios::binary);
    if (!file) return false;
    ExportReader reader(file);
    for (ExportedNote record = reader.Next(); !record.Text.empty(); record = reader.Next()) {
        if (file.bad()) return false;
        TakeIn(store, record);
    }
    return !file.bad();
}
