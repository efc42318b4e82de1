#include "exchange/KeptNotes.h"

#include <wx/app.h>
#include <wx/clipbrd.h>

#include "base/DataFolder.h"
#include "dialogs/basMessage.h"
#include "dialogs/basWait.h"
#include "exchange/NoteFolder.h"

namespace {

constexpr std::size_t kDeletedNotes = 100;

std::filesystem::path FolderNamed(const char* name) {
    const std::filesystem::path data = DataFolder();
    if (data.empty()) throw std::system_error(std::make_error_code(std::errc::no_such_file_or_directory));
    return data / name;
}

// The texts of deleted notes that could not be kept, until the user has been told.
std::wstring& UnkeptTexts() {
    static std::wstring texts;
    return texts;
}

bool PutIntoClipboard(const std::wstring& text) {
    const wxClipboardLocker clipboard;
    return !!clipboard && wxTheClipboard->SetData(new wxTextDataObject(text));
}

void TellOfUnkeptTexts() {
    const std::wstring texts = std::exchange(UnkeptTexts(), {});
    if (IsQuitting() || texts.empty()) return;
    const std::wstring where = PutIntoClipboard(texts) ? L"Ihr Text liegt jetzt in der Zwischenablage."
                                                       : L"Ihr Text war:\r\n\r\n" + texts;
    ShowMessage(L"Die gelöschte Notiz konnte nicht im Papierkorb aufgehoben werden.\r\n" + where, kCritical,
                L"Papierkorb");
}

}  // namespace

void KeepLongNote(const Note& note) { NoteFolder(FolderNamed("lange-notizen")).Keep(note); }

void KeepDeletedNote(const Note& note) {
    try {
        NoteFolder(FolderNamed("papierkorb"), kDeletedNotes).Keep(note);
    } catch (const std::system_error&) {
        std::wstring& texts = UnkeptTexts();
        if (texts.empty()) wxTheApp->CallAfter([] { TellOfUnkeptTexts(); });
        if (!texts.empty()) texts += L"\r\n\r\n";
        texts += note.text;
    }
}
