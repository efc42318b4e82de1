#include "notes/BringBack.h"

#include <algorithm>

#include "dialogs/Message.h"
#include "model/KeepReason.h"
#include "notes/NoteStore.h"

namespace {

const wchar_t* const kTitle = L"Papierkorb";
const wchar_t* const kBinnedFile = L"die Datei im Papierkorb";

const wchar_t* NotSaved(bool one) {
    return one ? L"Die Notiz bleibt im Papierkorb, denn sie konnte nicht gespeichert werden.\r\n"
               : L"Die Notizen bleiben im Papierkorb, denn sie konnten nicht gespeichert werden.\r\n";
}

const wchar_t* StillInBin(bool one) {
    return one ? L"Die Notiz ist wieder da, konnte aber nicht aus dem Papierkorb entfernt werden.\r\n"
               : L"Die Notizen sind wieder da, konnten aber nicht alle aus dem Papierkorb entfernt "
                 L"werden.\r\n";
}

// Those that are still in the bin as it is now, each once.
std::vector<BinnedNote> StillThere(std::vector<BinnedNote> notes, std::vector<BinnedNote> content) {
    auto from = content.begin();  // mostly both are in the same order
    std::erase_if(notes, [&](const BinnedNote& note) {
        auto found = std::find(from, content.end(), note);
        if (found == content.end()) {
            found = std::find(content.begin(), from, note);
            if (found == from) return true;
        }
        found->file.clear();  // taken
        from = found + 1;
        return false;
    });
    return notes;
}

bool Restore(NoteStore& store, NoteBin& bin, const std::vector<BinnedNote>& binned) {
    if (binned.empty()) return true;
    std::vector<Note> notes;
    for (const BinnedNote& each : binned) notes.push_back(each.note);
    const bool one = notes.size() == 1;
    if (const KeepResult kept = store.RestoreNotes(notes); !kept.Kept()) {
        TellMessage(NotSaved(one) + ReasonText(kept), kCritical, kTitle);
        return false;
    }
    if (const KeepResult removed = bin.Remove(binned); !removed.Kept())
        TellMessage(StillInBin(one) + ReasonText(removed, kBinnedFile), kCritical, kTitle);
    return true;
}

}  // namespace

bool BringBack(NoteStore& store, NoteBin& bin, const std::vector<BinnedNote>& notes) {
    const NoteBin::Content content = bin.Read();
    TellOfUnreadableBin(content.read);
    return content.read.Kept() && Restore(store, bin, StillThere(notes, content.notes));
}

frmNote* BringBackLast(NoteStore& store, NoteBin& bin) {
    NoteBin::Content content = bin.Read();
    TellOfUnreadableBin(content.read);
    if (!content.read.Kept()) return nullptr;
    if (content.notes.empty()) {
        TellMessage(L"Im Papierkorb liegt keine Notiz.", kInformation, kTitle);
        return nullptr;
    }
    std::erase_if(content.notes,
                  [last = content.notes.front().file](const BinnedNote& note) { return note.file != last; });
    return Restore(store, bin, content.notes) ? store.Notes().back().get() : nullptr;
}

void TellOfUnreadableBin(const KeepResult& read) {
    if (read.Kept()) return;
    TellMessage(L"Der Papierkorb kann nicht gelesen werden.\r\n" + ReasonText(read, kBinnedFile), kCritical,
                kTitle);
}
