#include "notes/NewText.h"

#include "base/DateText.h"
#include "base/Text.h"
#include "dialogs/Message.h"
#include "model/KeepReason.h"
#include "notes/NoteStore.h"

namespace {

constexpr const wchar_t* kTitle = L"Neue Notiz";

}  // namespace

bool AddText(NoteStore& store, const std::wstring& text) {
    const Note note{.text = AsNoteText(text), .creationTime = CurrentCreationTime()};
    if (note.text.find_first_not_of(L" \t\r\n") == note.text.npos) return false;
    if (StoredLength(note.text) > kLongestNoteText) {
        TellMessage(
            L"Der Text ist zu lang für eine Notiz: Er hat mehr als 65.535 Byte.\r\nEs ist keine Notiz "
            L"entstanden.",
            kCritical, kTitle);
        return false;
    }
    const KeepResult kept = store.AddNoteIfKept(note);
    if (!kept.Kept()) {
        TellMessage(L"Die Notiz konnte nicht gespeichert werden.\r\n" + ReasonText(kept), kCritical, kTitle);
        return false;
    }
    if (!ComesBack(note.text))
        TellMessage(
            L"Der Text hat mehr als etwa 4000 Zeichen. So viel liest Kivora beim nächsten Start nicht wieder "
            L"ein.\r\nDer ganze Text liegt deshalb auch als Exportdatei im Ordner \"lange-notizen\".",
            kInformation, kTitle);
    return true;
}
