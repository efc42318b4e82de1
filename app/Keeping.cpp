#include "app/Keeping.h"

#include <fstream>
#include <map>
#include <sstream>
#include <tuple>

#include "app/EmergencyFile.h"
#include "app/RecoveryText.h"
#include "app/frmUnsaved.h"
#include "base/FileName.h"
#include "base/NewFile.h"
#include "base/Text.h"
#include "dialogs/Message.h"
#include "dialogs/OneDialog.h"
#include "dialogs/Wait.h"
#include "exchange/FileDialog.h"
#include "exchange/KeptFile.h"
#include "exchange/KeptNotes.h"
#include "model/AddressBook.h"
#include "model/KeepReason.h"
#include "notes/NoteStore.h"
#include "notes/basNotes.h"
#include "registry/RegistryHealth.h"

namespace fs = std::filesystem;

namespace {

std::vector<Note> NotesOf(const NoteStore& store) {
    std::vector<Note> notes;
    for (const NotePtr& note : store.Notes()) notes.push_back(note->Content());
    return notes;
}

// What makes two notes the same one, wherever they stand.
auto Identity(const Note& note) {
    return std::tuple(note.text, note.creationTime, note.look, note.foreground);
}

// Adds the notes that are not there yet, and puts the others where they stood last. The number of the added.
std::size_t TakeIn(NoteStore& store, const UnsavedImage& image) {
    std::multimap<decltype(Identity(Note())), frmNote*> there;
    for (const NotePtr& note : store.Notes()) there.emplace(Identity(note->Content()), note.get());
    std::size_t added = 0;
    for (const Note& note : image.notes) {
        if (const auto same = there.find(Identity(note)); same != there.end()) {
            same->second->Content(note);
            there.erase(same);
        } else {
            // Should that fail, the note is on the screen, and its beginning comes back.
            if (!ComesBack(note.text)) KeepLongNote(note);
            frmNote& adopted = store.AdoptNote(note);
            ++added;
            if (note.place != NotePlace()) continue;
            adopted.PlaceAsNew();  // it was still being written
            adopted.AutoSize();
        }
    }
    for (const clsAddressBookEntry& entry : image.entries) AddAddressBookEntry(entry);
    store.AutostartEnabled = image.autostart;
    return added;
}

}  // namespace

Keeping::Keeping(NoteStore& store) : store_(store), unsaved_([this] { return Repeat(); }) {
    store_.OnSaved = [this](const KeepResult& result) {
        unsaved_.Heard(result);
        if (store_.AllKept()) RemoveTakenIn();
        if (const auto report = TakeRecoveryReport())
            TellMessage(RecoveryText(*report), kExclamation, L"Notizen wiederhergestellt");
    };
}

void Keeping::ReadStore() {
    loaded_ = false;  // until it is complete nothing of it is to be written
    store_.LoadNotes();
    loaded_ = true;
    if (const auto report = TakeRecoveryReport())
        messages_.push_back({RecoveryText(*report), L"Notizen wiederhergestellt", kExclamation});
}

void Keeping::Load() {
    ReadStore();
    const RegistryHealth health = HealthOfRegistry();
    if (!health.reading.Kept()) {
        messages_.push_back(
            {L"Ihre Notizen können zurzeit nicht gelesen werden. Sie sind nicht verloren: Kivora "
             L"versucht es weiter und zeigt sie, sobald es gelingt.\r\n\r\n" +
                 ReasonText(health.reading),
             L"Notizen nicht lesbar", kCritical});
    } else if (!health.writing.Kept()) {
        messages_.push_back({L"Änderungen an Ihren Notizen können zurzeit nicht gespeichert werden.\r\n\r\n" +
                                 ReasonText(health.writing),
                             L"Nicht gespeichert", kCritical});
    }
}

void Keeping::TakeInLeftWork() {
    takesInLeftWork_ = true;
    if (!HealthOfRegistry().reading.Kept()) {  // nobody knows yet what is there already
        unsaved_.TryAgainLater();
        return;
    }
    std::size_t added = 0;
    for (const fs::path& path : EmergencyFiles(EmergencyFolders())) {
        std::ifstream file(path, std::ios::binary);
        std::string bytes;
        for (char block[4096]; file.read(block, sizeof block) || file.gcount() > 0;)
            bytes.append(block, static_cast<std::size_t>(file.gcount()));
        if (file.bad() || !file.is_open()) continue;  // the disk does not give it now
        std::optional<UnsavedImage> image = ReadEmergencyBytes(bytes);
        if (!image) {  // what was cut off when the machine went down may still hold notes
            std::istringstream records(bytes, std::ios::binary);
            image = UnsavedImage{store_.AutostartEnabled, NotesOfKeptFile(records), {}};
            if (image->notes.empty()) continue;
        }
        added += TakeIn(store_, *image);
        takenIn_.push_back(path);
    }
    if (takenIn_.empty()) return;
    const bool kept = store_.SaveNotes().Kept();
    if (added > 0) {
        const std::wstring notes =
            added == 1 ? L"Eine Notiz wurde" : std::to_wstring(added) + L" Notizen wurden";
        messages_.push_back(
            {L"Kivora musste enden, bevor alles gespeichert war. Was noch nicht gespeichert war, lag in "
             L"einer Notfalldatei.\r\n" +
                 notes + (kept ? L" daraus übernommen und gespeichert." : L" daraus übernommen."),
             L"Notizen übernommen", kInformation});
    }
}

void Keeping::Tell(Boxes boxes) {
    for (const Message& message : std::exchange(messages_, {})) {
        if (boxes == Boxes::Waited)
            ShowMessage(message.text, message.flags, message.title);
        else
            TellMessage(message.text, message.flags, message.title);
    }
}

// True when there is nothing left to be tried again.
bool Keeping::Repeat() {
    if (!HealthOfRegistry().reading.Kept()) {
        if (!ReadRegistryAgain().Kept()) {
            store_.SaveNotes();
            return false;
        }
        ReadStore();
        if (OnReadLate) OnReadLate();
        if (takesInLeftWork_) TakeInLeftWork();
        store_.ShowNotes([this] { Tell(Boxes::Unwaited); });
    }
    store_.SaveNotes();
    return true;
}

bool Keeping::MayQuit() {
    if (!loaded_) return true;
    static OneDialog once;
    if (once.BroughtForward()) return false;
    const Unsaved::Quiet quiet(unsaved_);
    store_.SaveNotes();
    if (!unsaved_.Any()) return true;
    const OneDialog::Opened<frmUnsaved> dialog(once, ReasonText(unsaved_.Why()));
    dialog->OnRepeat = [this](frmUnsaved& box) {
        store_.SaveNotes();
        box.Reason(ReasonText(unsaved_.Why()));
        return !unsaved_.Any();
    };
    dialog->OnSaveToFile = [this](frmUnsaved& box) { return SaveToFile(box); };
    decided_ = dialog->ShowModal() == 1;
    return decided_;
}

bool Keeping::SaveToFile(frmUnsaved& dialog) {
    const auto chosen = ChooseFile(dialog, {.DialogTitle = L"Notizen sichern", .save = true});
    if (!chosen || IsQuitting()) return false;
    // Under another name first: a file that is there already stays as it is until the new one is complete.
    const fs::path file = FilePath(*chosen), unfinished = FilePath(*chosen + L".neu");
    std::error_code failed = WriteNewFile(unfinished, KeptFileBytes(NotesOf(store_)));
    if (!failed) {
        fs::rename(unfinished, file, failed);
        std::error_code ignored;
        if (failed) fs::remove(unfinished, ignored);
    }
    if (!failed) return true;
    ShowMessage(L"Die Datei " + ShownFileName(*chosen) + L" konnte nicht geschrieben werden.\r\n(" +
                    FromUtf8(failed.message()) + L")",
                kCritical, L"Notizen sichern");
    return false;
}

void Keeping::KeepAtOnce() {
    if (!loaded_) return;
    const std::optional<Note> written = KeepTextBeingWritten();
    store_.SaveNotes();
    if (written || (!store_.AllKept() && !decided_)) KeepElsewhere(written);
}

void Keeping::KeepWithoutDisplay() {
    if (!loaded_) return;
    const std::optional<Note> written = KeepTextBeingWritten();
    store_.WriteImage();
    if (written || !store_.AllKept()) KeepElsewhere(written);
}

void Keeping::KeepElsewhere(const std::optional<Note>& written) {
    UnsavedImage image{store_.AutostartEnabled, NotesOf(store_), AddressBook()};
    if (written) image.notes.push_back(*written);
    if (WriteEmergencyFile(image, EmergencyFolders()).Kept()) RemoveTakenIn();
}

void Keeping::RemoveTakenIn() {
    std::error_code ignored;
    for (const fs::path& file : std::exchange(takenIn_, {})) fs::remove(file, ignored);
}
