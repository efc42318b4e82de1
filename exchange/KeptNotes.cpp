#include "exchange/KeptNotes.h"

#include <wx/app.h>
#include <wx/clipbrd.h>

#include "base/DataFolder.h"
#include "dialogs/Message.h"
#include "dialogs/Wait.h"
#include "exchange/NoteFolder.h"
#include "model/KeepReason.h"

namespace {

constexpr std::size_t kDeletedNotes = 100;

KeepResult Keep(const Note& note, const char* folder, std::size_t most) {
    const std::filesystem::path data = DataFolder();
    if (data.empty()) return {KeepFailure::NoAccess};
    try {
        NoteFolder(data / folder, most).Keep(note);
        return {};
    } catch (const std::system_error& failure) {
        return FailureOf(failure.code());
    }
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
    ShowMessage(L"Die Notiz konnte nicht im Papierkorb aufgehoben werden.\r\n" + where, kCritical,
                L"Papierkorb");
}

}  // namespace

KeepResult KeepLongNote(const Note& note) { return Keep(note, "lange-notizen", NoteFolder::kUnlimited); }

KeepResult KeepDeletedNote(const Note& note) { return Keep(note, "papierkorb", kDeletedNotes); }

void TellOfUnkeptNote(const Note& note) {
    std::wstring& texts = UnkeptTexts();
    if (texts.empty()) wxTheApp->CallAfter([] { TellOfUnkeptTexts(); });
    if (!texts.empty()) texts += L"\r\n\r\n";
    texts += note.text;
}
