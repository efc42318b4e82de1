#include "app/Keeping.h"

#include <utility>

#include "app/RecoveryText.h"
#include "app/frmUnsaved.h"
#include "base/DateText.h"
#include "base/FileName.h"
#include "base/NewFile.h"
#include "dialogs/Message.h"
#include "dialogs/OneDialog.h"
#include "dialogs/Wait.h"
#include "exchange/FileDialog.h"
#include "exchange/ImportNotes.h"
#include "exchange/KeptFile.h"
#include "model/AddressBook.h"
#include "model/KeepReason.h"
#include "notes/NoteStore.h"
#include "registry/RegistryHealth.h"

namespace fs = std::filesystem;

namespace {

// The number of notes that were not there.
std::size_t Apply(NoteStore& store, const UnsavedImage& image) {
    // As long as nothing else was kept since, and nothing is new here, the image is all there is to be.
    const bool replaces = image.stored == store.Stored() && store.AllKept();
    std::vector<frmNote*> there;
    for (const NotePtr& note : store.Notes()) there.push_back(note.get());
    const Takeover takeover = TakeoverOf(store.CopyNotes(), image.notes, replaces);
    for (const auto& [index, note] : takeover.same) there[index]->Content(note);
    for (const std::size_t index : takeover.gone) store.TakeBack(*there[index]);
    for (const Note& note : takeover.added) store.AdoptKeptNote(note);
    if (replaces) {
        const std::vector<clsAddressBookEntry> before = AddressBook();
        for (const clsAddressBookEntry& entry : before) RemoveAddressBookEntry(entry.PCName());
    }
    for (const clsAddressBookEntry& entry : image.entries) AddAddressBookEntry(entry);
    store.AutostartEnabled = image.autostart;
    return takeover.added.size();
}

}  // namespace

Keeping::Keeping(NoteStore& store) : store_(store), unsaved_([this] { Repeat(); }) {
    store_.OnSaved = [this](const KeepResult& result) {
        unsaved_.Heard(result);
        if (unreadable_) unsaved_.TryAgainLater();  // although nothing is unsaved
        ShowTrouble();
        if (store_.AllKept()) RemoveTakenIn();
        if (const auto report = TakeRecoveryReport())
            TellMessage(RecoveryText(*report), kExclamation, L"Notizen wiederhergestellt");
    };
}

void Keeping::ReadStore() {
    loaded_ = false;  // until it is complete nothing of it is to be written
    store_.LoadNotes();
    loaded_ = true;
    unreadable_ = !HealthOfRegistry().reading.Kept();
    ShowTrouble();
    if (const auto report = TakeRecoveryReport())
        messages_.push_back({RecoveryText(*report), L"Notizen wiederhergestellt", kExclamation});
}

void Keeping::OnTrouble(std::function<void(Trouble)> call) {
    onTrouble_ = std::move(call);
    onTrouble_(shown_);
}

void Keeping::ShowTrouble() {
    const Trouble now = unreadable_ ? Trouble::Unreadable : unsaved_.Any() ? Trouble::Unsaved : Trouble::None;
    if (std::exchange(shown_, now) != now && onTrouble_) onTrouble_(now);
}

void Keeping::Load() {
    ReadStore();
    const RegistryHealth health = HealthOfRegistry();
    if (unreadable_) {
        messages_.push_back(
            {L"Ihre Notizen können zurzeit nicht gelesen werden. Sie sind nicht verloren: Kivora "
             L"versucht es weiter und zeigt sie, sobald es gelingt. Bis dahin trägt sein Symbol ein "
             L"Warnzeichen.\r\n\r\n" +
                 ReasonText(health.reading),
             L"Notizen nicht lesbar", kCritical});
    } else if (!health.writing.Kept()) {
        messages_.push_back({L"Änderungen an Ihren Notizen können zurzeit nicht gespeichert werden.\r\n\r\n" +
                                 ReasonText(health.writing),
                             L"Nicht gespeichert", kCritical});
    }
}

void Keeping::TakeIn(const fs::path& path) {
    ByteSource file = ByteSource::OfFile(path);
    const std::string bytes = file.ReadRest();
    if (file.Failure()) return;  // the disk does not give it now
    std::optional<UnsavedImage> image = ReadEmergencyBytes(bytes);
    if (!image) {  // what was cut off when the machine went down may still hold notes
        file.Rewind();
        image = UnsavedImage{.autostart = store_.AutostartEnabled, .notes = NotesOfKeptFile(file)};
        if (image->notes.empty()) return;
    }
    added_ += Apply(store_, *image);
    for (const std::wstring& name : image->files) {
        const std::size_t before = store_.CountNotes();
        if (!ImportNotes(store_, name))
            messages_.push_back({ImportFailureText(name), kImportFailure, kCritical});
        added_ += store_.CountNotes() - before;
    }
    takenIn_.push_back(path);
}

void Keeping::TakeInLeftWork() {
    takesInLeftWork_ = true;
    if (unreadable_) {  // nobody knows yet what is there already
        unsaved_.TryAgainLater();
        return;
    }
    for (const fs::path& path : EmergencyFiles(EmergencyFolders())) TakeIn(path);
    if (takenIn_.empty()) return;
    const bool kept = store_.SaveNotes().Kept();
    if (const std::size_t added = std::exchange(added_, 0)) {
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

void Keeping::Repeat() {
    if (unreadable_) {
        if (!ReadRegistryAgain().Kept()) return unsaved_.TryAgainLater();
        ReadStore();
        if (OnReadLate) OnReadLate();
        if (takesInLeftWork_) TakeInLeftWork();
        store_.ShowNotes([this] { Tell(Boxes::Unwaited); });
    }
    store_.SaveNotes();
}

// Why something is not kept, in sentences; empty when all of it is.
std::wstring Keeping::SaveAll() {
    store_.SaveNotes();
    if (unsaved_.Any()) return ReasonText(unsaved_.Why());
    const std::optional<UnkeptText> written = KeepTextBeingWritten();
    return written ? ReasonText(written->why, L"die Datei im Papierkorb") : std::wstring();
}

bool Keeping::MayQuit() {
    if (!loaded_) return true;
    static OneDialog once;
    if (once.BroughtForward()) return false;
    const Unsaved::Quiet quiet(unsaved_);
    const std::wstring reason = SaveAll();
    if (reason.empty()) return true;
    const OneDialog::Opened<frmUnsaved> dialog(once, reason);
    dialog->OnRepeat = [this](frmUnsaved& box) {
        const std::wstring now = SaveAll();
        box.Reason(L"Um " + CurrentTimeText() + L" Uhr erneut versucht, ohne Erfolg.\r\n" + now);
        return now.empty();
    };
    dialog->OnSaveToFile = [this](frmUnsaved& box) { return SaveToFile(box); };
    decided_ = dialog->ShowModal() == 1;
    return decided_;
}

bool Keeping::SaveToFile(frmUnsaved& dialog) {
    const auto chosen = ChooseFile(dialog, {.DialogTitle = L"Notizen sichern",
                                            .save = true,
                                            .name = L"Kivora-Notizen " + CurrentDateText() + L".kvr"});
    if (!chosen || IsQuitting()) return false;
    const KeepResult saved =
        FailureOf(SaveFile(FilePath(*chosen), EmergencyBytes(Image(KeepTextBeingWritten()))));
    if (saved.Kept()) return true;
    ShowMessage(L"Die Datei " + ShownFileName(*chosen) + L" konnte nicht geschrieben werden.\r\n\r\n" +
                    ReasonText(saved, L"die Datei"),
                kCritical, L"Notizen sichern");
    return false;
}

void Keeping::KeepAtOnce(const std::vector<std::wstring>& files) {
    if (!loaded_) return;
    const std::optional<UnkeptText> written = KeepTextBeingWritten();
    store_.SaveNotes();
    if (decided_) {
        if (!files.empty()) KeepElsewhere({.autostart = store_.AutostartEnabled}, files);
    } else if (written || !store_.AllKept() || !files.empty()) {
        KeepElsewhere(Image(written), files);
    }
}

void Keeping::KeepWithoutDisplay(const std::vector<std::wstring>& files) {
    if (!loaded_) return;
    const std::optional<UnkeptText> written = KeepTextBeingWritten();
    store_.WriteImage();
    if (written || !store_.AllKept() || !files.empty()) KeepElsewhere(Image(written), files);
}

UnsavedImage Keeping::Image(const std::optional<UnkeptText>& written) const {
    UnsavedImage image{
        .autostart = store_.AutostartEnabled, .notes = store_.CopyNotes(), .entries = AddressBook()};
    if (!unreadable_) image.stored = store_.Stored();
    if (written) image.notes.push_back(written->note);
    return image;
}

void Keeping::KeepElsewhere(UnsavedImage image, const std::vector<std::wstring>& files) {
    image.files = files;
    if (WriteEmergencyFile(image, EmergencyFolders()).Kept()) RemoveTakenIn();
}

void Keeping::RemoveTakenIn() {
    std::error_code ignored;
    for (const fs::path& file : std::exchange(takenIn_, {})) fs::remove(file, ignored);
}
