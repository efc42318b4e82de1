#include "exchange/KeptNotes.h"

#include <wx/app.h>

#include "base/DataFolder.h"
#include "base/FileName.h"
#include "dialogs/Clipboard.h"
#include "dialogs/Message.h"
#include "dialogs/Wait.h"
#include "exchange/ImportFile.h"
#include "exchange/NoteFolder.h"
#include "model/KeepReason.h"

namespace {

constexpr std::size_t kDeletedNotes = 100;
constexpr std::size_t kDeletedFloods = 10;

// Of the texts in one file of a flood; the import takes files twice as large.
constexpr std::size_t kFloodCharacters = kMostImportedCharacters / 2;

KeepResult Keep(const std::vector<Note>& notes, const wchar_t* folder, std::size_t most) {
    const std::filesystem::path data = DataFolder();
    if (data.empty()) return {KeepFailure::NoAccess};
    try {
        NoteFolder(data / FilePath(folder), most).KeepTogether(notes);
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

void TellOfUnkeptTexts() {
    const std::wstring texts = std::exchange(UnkeptTexts(), {});
    if (IsQuitting() || texts.empty()) return;
    const std::wstring where =
        CopyText(texts) ? L"Ihr Text liegt jetzt in der Zwischenablage." : L"Ihr Text war:\r\n\r\n" + texts;
    ShowMessage(L"Die Notiz konnte nicht im Papierkorb aufgehoben werden.\r\n" + where, kCritical,
                L"Papierkorb");
}

}  // namespace

KeepResult KeepLongNote(const Note& note) {
    const wchar_t* const folder = L"lange-notizen";
    if (NoteFolder(DataFolder() / FilePath(folder)).Holds(note)) return {};
    return Keep({note}, folder, NoteFolder::kUnlimited);
}

KeepResult KeepDeletedNote(const Note& note) { return Keep({note}, L"papierkorb", kDeletedNotes); }

KeepResult KeepDeletedFlood(const std::vector<Note>& notes) {
    KeepResult kept;
    for (auto next = notes.begin(); next != notes.end() && kept.Kept();) {
        std::vector<Note> together;
        for (std::size_t characters = 0; next != notes.end() && characters < kFloodCharacters; ++next) {
            characters += next->text.size();
            together.push_back(*next);
        }
        kept = Keep(together, L"papierkorb/flut", kDeletedFloods);
    }
    return kept;
}

void TellOfUnkeptNote(const Note& note) {
    std::wstring& texts = UnkeptTexts();
    if (texts.empty()) wxTheApp->CallAfter([] { TellOfUnkeptTexts(); });
    if (!texts.empty()) texts += L"\r\n\r\n";
    texts += note.text;
}
