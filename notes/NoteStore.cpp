#include "notes/NoteStore.h"

#include <wx/app.h>

#include <algorithm>
#include <utility>

#include "model/AddressBook.h"
#include "notes/NotePlace.h"
#include "notes/NoteWindow.h"
#include "tray/Notification.h"

void NoteUnloader::operator()(frmNote* note) const { note->Unload(); }

NoteStore::NoteStore(NoteHost& host) : host_(host) {
    pause_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
        std::vector<frmNote*> notes;
        for (const auto& note : std::exchange(arrived_, {})) notes.push_back(note);
        ShowByAndBy(notes);
    });
}

void NoteStore::LoadNotes() {
    const StoredImage image = ReadStoredImage();
    AutostartEnabled = image.autostart;
    std::vector<NotePtr> added = std::exchange(notes_, {});
    const bool nothingAdded = added.empty() && AddressBook().empty();
    std::vector<const Note*> stored;
    for (const StoredNote& each : image.notes) stored.push_back(&each.note);
    stored_ = DigestOf(image.autostart, stored, image.entries, Digested::AsRead);
    bool shortened = false;
    for (const StoredNote& each : image.notes) {
        // Keys of windows do not change any more.
        lastNoteNumber_ = added.empty() ? each.key : lastNoteNumber_ + 1;
        Note note = each.note;
        if (!each.tooLong.empty()) {
            note.text = each.tooLong;
            if (!OnLongText || OnLongText(note).Kept()) {
                note.text.clear();
                shortened = true;
            }
        }
        notes_.push_back(MakeNote(note, lastNoteNumber_));
    }
    std::move(added.begin(), added.end(), std::back_inserter(notes_));
    for (const clsAddressBookEntry& entry : image.entries) AddAddressBookEntry(entry);
    if (nothingAdded) kept_ = Digest();
    if (shortened) WriteImage();  // or the next start would keep the texts once more
}

KeepResult NoteStore::SaveNotes() {
    const KeepResult result = WriteImage();
    Heard(result);
    return result;
}

KeepResult NoteStore::WriteImage() {
    KeepResult result = WriteStoredImage(AutostartEnabled, Contents(), AddressBook());
    if (result.Kept()) {
        kept_ = Digest();
        stored_ = Digest(Digested::AsRead);
    }
    return result;
}

std::vector<Note> NoteStore::CopyNotes() const {
    std::vector<Note> notes;
    for (const NotePtr& note : notes_) notes.push_back(note->Content());
    return notes;
}

std::vector<const Note*> NoteStore::Contents() const {
    std::vector<const Note*> contents;
    for (const NotePtr& note : notes_) contents.push_back(&note->Content());
    return contents;
}

std::uint64_t NoteStore::Digest(Digested how) const {
    return DigestOf(AutostartEnabled, Contents(), AddressBook(), how);
}

NoteStore::Watch::Watch(NoteStore& store, std::function<void()> changed)
    : store_(store), changed_(std::move(changed)) {
    store_.watches_.push_back(this);
}

NoteStore::Watch::~Watch() { std::erase(store_.watches_, this); }

void NoteStore::TellOfChange() const {
    Notification::MenusChanged();
    for (const Watch* const watch : watches_) watch->changed_();
}

void NoteStore::Heard(const KeepResult& result) {
    TellOfChange();  // whatever somebody shows of the notes is saved
    if (OnSaved) OnSaved(AllKept() ? KeepResult() : result);
}

NotePtr NoteStore::MakeNote(const Note& content, std::int32_t key) {
    NotePtr note(new frmNote(host_));
    note->NoteKey(key);
    note->Content(content);
    return note;
}

NotePtr NoteStore::MakeNewNote(const Note& content) {
    NotePtr made = MakeNote(content, ++lastNoteNumber_);
    PlaceAsNew(*made);
    return made;
}

void NoteStore::PlaceAsNew(frmNote& note) {
    std::vector<wxRect> others;
    for (const NotePtr& each : notes_) {
        if (each.get() == &note || each->Minimized()) continue;
        // As the note knows it: to ask X11 for each, at each new note, takes longer than all the rest.
        others.push_back(OnScreens(NotePixels(*each, each->Content().place)));
    }
    note.PlaceAsNew(others);
}

frmNote& NoteStore::AddNote(const Note& content) {
    frmNote& note = *notes_.emplace_back(MakeNewNote(content));
    note.ShowStacked();
    SaveNotes();
    return note;
}

KeepResult NoteStore::AddNoteIfKept(const Note& content) {
    // First the text: what is left over when the note itself is then not kept is a file too many, not a note
    // too few.
    if (KeepResult elsewhere = KeepLong(content); !elsewhere.Kept()) return elsewhere;
    frmNote& note = *notes_.emplace_back(MakeNewNote(content));
    KeepResult result = WriteImage();
    if (result.Kept()) {
        ShowArrived(note);
        Heard(result);
    } else {
        Remove(note);
    }
    return result;
}

frmNote& NoteStore::AdoptNote(const Note& content) {
    notes_.push_back(MakeNote(content, ++lastNoteNumber_));
    return *notes_.back();
}

frmNote& NoteStore::AdoptKeptNote(const Note& content) {
    frmNote& note = AdoptNote(content);
    if (content.place == NotePlace()) PlaceAsNew(note);
    return note;
}

KeepResult NoteStore::KeepLong(const Note& note) const {
    return ComesBack(note.text) || !OnLongText ? KeepResult() : OnLongText(note);
}

KeepResult NoteStore::RestoreNotes(const std::vector<Note>& notes) {
    for (const Note& note : notes) {
        if (KeepResult elsewhere = KeepLong(note); !elsewhere.Kept()) return elsewhere;
    }
    const auto before = static_cast<std::ptrdiff_t>(notes_.size());
    for (const Note& note : notes) AdoptKeptNote(note);
    KeepResult result = WriteImage();
    if (result.Kept()) {
        std::vector<frmNote*> back;
        for (auto note = notes_.begin() + before; note != notes_.end(); ++note) back.push_back(note->get());
        ShowByAndBy(back);
        Heard(result);
    } else {
        notes_.erase(notes_.begin() + before, notes_.end());
    }
    return result;
}

void NoteStore::Remove(frmNote& note) {
    ForgetMinimizedNote(note);
    std::erase_if(notes_, [&](const NotePtr& each) { return each.get() == &note; });
}

void NoteStore::TakeBack(frmNote& note) {
    Remove(note);
    TellOfChange();
}

bool NoteStore::DeleteNote(frmNote& note) {
    if (Find(note.NoteKey()) != &note) return false;
    const Note content = note.Content();
    const KeepResult binned = OnDelete ? OnDelete(content) : KeepResult();
    const auto place =
        std::find_if(notes_.begin(), notes_.end(), [&](const NotePtr& each) { return each.get() == &note; });
    NotePtr taken = std::move(*place);
    const auto after = notes_.erase(place);
    const KeepResult saved = WriteImage();
    const bool gone = binned.Kept() || saved.Kept();
    if (gone) {
        ForgetMinimizedNote(note);
        if (note.UsedByKeys()) GiveKeyboard(note.NoteKey(), true);  // before it goes, as in frmNote::PutAway
        taken.reset();
        Heard(saved);
    } else {
        notes_.insert(after, std::move(taken));
    }
    if (!binned.Kept() && OnUnbinned) OnUnbinned(content, gone, binned);
    return gone;
}

KeepResult NoteStore::DeleteInto(const BinOfMany& bin, const std::vector<frmNote*>& notes) {
    std::vector<Note> contents;
    for (const frmNote* const note : notes) contents.push_back(note->Content());
    KeepResult binned = bin && !notes.empty() ? bin(contents) : KeepResult();
    if (!binned.Kept() || notes.empty()) return binned;
    for (frmNote* const note : notes) ForgetMinimizedNote(*note);
    const std::unordered_set<const frmNote*> gone(notes.begin(), notes.end());
    std::erase_if(notes_, [&](const NotePtr& each) { return gone.contains(each.get()); });
    SaveNotes();
    return binned;
}

void NoteStore::UnloadAllNotes() {
    toShow_.reset();
    // Not one by one through the list that wxWidgets keeps of windows to destroy: it is searched for each.
    for (NotePtr& note : notes_) note.release()->UnloadAtEnd();
    notes_.clear();
}

void NoteStore::MinimizeAll() {
    minimizedByCommand_.emplace();
    for (const NotePtr& note : notes_) {
        if (note->Minimized()) continue;
        note->Minimized(true);
        minimizedByCommand_->insert(note->NoteKey());
    }
}

void NoteStore::UnMinimizeAll() {
    if (!minimizedByCommand_) return;
    // Each restored note asks to be forgotten, which would change the set that is being walked.
    const std::unordered_set<std::int32_t> keys = std::move(*minimizedByCommand_);
    minimizedByCommand_.reset();
    std::vector<frmNote*> back;
    for (frmNote* const note : InStackingOrder()) {
        if (!keys.contains(note->NoteKey()) || !note->Minimized()) continue;
        note->EndMinimized();
        back.push_back(note);
    }
    ShowByAndBy(back);
}

void NoteStore::ForgetMinimizedNote(const frmNote& note) {
    if (minimizedByCommand_) minimizedByCommand_->erase(note.NoteKey());
}

std::vector<frmNote*> NoteStore::InStackingOrder() const {
    std::vector<frmNote*> notes;
    for (const NotePtr& note : notes_) notes.push_back(note.get());
    // The others first, so that the topmost notes end above all of them.
    std::stable_partition(notes.begin(), notes.end(),
                          [](const frmNote* note) { return !note->Foreground(); });
    return notes;
}

void NoteStore::ApplyForeground() {
    std::vector<frmNote*> hidden;
    for (frmNote* const note : InStackingOrder()) {
        if (note->IsShown())
            note->ShowStacked();
        else
            hidden.push_back(note);
    }
    ShowByAndBy(hidden);
}

void NoteStore::ShowNotes(std::function<void()> then) { ShowByAndBy(InStackingOrder(), std::move(then)); }

void NoteStore::ShowArrived(frmNote& note) {
    constexpr int kPauseMilliseconds = 200, kLongestMilliseconds = 2000;
    if (pause_.IsRunning()) {
        arrived_.emplace_back(&note);
    } else {
        arriving_.Start();
        ShowByAndBy({&note});
    }
    const int left = kLongestMilliseconds - static_cast<int>(arriving_.Time());
    pause_.StartOnce(std::clamp(left, 1, kPauseMilliseconds));
}

void NoteStore::ShowByAndBy(const std::vector<frmNote*>& notes, std::function<void()> then) {
    const bool underWay = toShow_ != nullptr;
    if (!underWay) toShow_ = std::make_shared<ToShow>();
    toShow_->notes.insert(toShow_->notes.end(), notes.begin(), notes.end());
    if (then) toShow_->then.push_back(std::move(then));
    if (!underWay) ShowNextNotes();
}

void NoteStore::ShowNextNotes() {
    // GDK keeps the windows that are to be painted in a list, and looks for the place of a new one in a time
    // that grows with the square of their number. So these are painted before the next come.
    constexpr int kMostAtOnce = 80;
    frmNote* awaited = nullptr;
    for (int shown = 0; shown < toShow_->atOnce && !toShow_->notes.empty();) {
        frmNote* const note = toShow_->notes.front();
        toShow_->notes.pop_front();
        if (!note || note->Minimized() || note->IsShown()) continue;
        note->ShowStacked();
        if (2 * shown <= toShow_->atOnce || toShow_->notes.empty()) awaited = note;
        ++shown;
    }
    if (!awaited) {
        const std::shared_ptr<ToShow> done = std::exchange(toShow_, nullptr);
        for (const std::function<void()>& then : done->then) then();
        return;
    }
    toShow_->atOnce = std::min(2 * toShow_->atOnce, kMostAtOnce);
    // What the display has to say of a few windows is heard before the next are shown, or it would pile up;
    // but not of all of them, or the display would wait for this program in between.
    WhenOnScreen(*awaited, [this, toShow = std::weak_ptr(toShow_)] {
        wxTheApp->CallAfter([this, toShow] {
            if (!toShow.expired()) ShowNextNotes();
        });
    });
}

void NoteStore::PlaceOnScreens() {
    for (const NotePtr& note : notes_) note->PlaceOnScreens();
}

std::size_t NoteStore::CountVisibleNotes() const {
    return static_cast<std::size_t>(
        std::count_if(notes_.begin(), notes_.end(), [](const NotePtr& note) { return !note->Minimized(); }));
}

NoteStore::UntouchedNotes NoteStore::CountUntouchedNotes() const {
    UntouchedNotes untouched;
    for (const NotePtr& note : notes_) {
        if (!note->Untouched()) continue;
        ++untouched.notes;
        untouched.characters += note->Text().size();
    }
    return untouched;
}

std::size_t NoteStore::CountMinimizedByCommand() const {
    return minimizedByCommand_ ? minimizedByCommand_->size() : 0;
}

frmNote* NoteStore::Find(std::int32_t noteKey) const {
    for (const NotePtr& note : notes_) {
        if (note->NoteKey() == noteKey) return note.get();
    }
    return nullptr;
}

void NoteStore::GiveKeyboard(std::int32_t noteKey, bool showing) const {
    frmNote* first = nullptr;
    frmNote* next = nullptr;  // keys grow in the store's order
    for (const NotePtr& note : notes_) {
        if (note->Minimized()) continue;
        if (!first) first = note.get();
        if (!next && note->NoteKey() >= noteKey) next = note.get();
    }
    if (frmNote* const heir = next ? next : first) heir->TakeFocus(showing);
}

std::function<void()> NoteStore::KeyboardTo(const frmNote& note) const {
    return [this, key = note.NoteKey(), showing = note.UsedByKeys()] { GiveKeyboard(key, showing); };
}

frmNote& NoteStore::NextShown(frmNote& note, bool forward) const {
    frmNote* next = nullptr;
    frmNote* first = nullptr;
    bool passed = false;
    // One round, in which the notes behind this one take precedence over those in front of it.
    const auto look = [&](frmNote& each) {
        if (&each == &note) {
            passed = true;
        } else if (!each.Minimized()) {
            if (!first) first = &each;
            if (passed && !next) next = &each;
        }
    };
    if (forward) {
        for (const NotePtr& each : notes_) look(*each);
    } else {
        for (auto each = notes_.rbegin(); each != notes_.rend(); ++each) look(**each);
    }
    return next ? *next : first ? *first : note;
}
