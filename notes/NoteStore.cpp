#include "notes/NoteStore.h"

#include <wx/app.h>

#include <algorithm>
#include <utility>

#include "base/basText.h"
#include "model/AddressBook.h"
#include "notes/NoteWindow.h"
#include "registry/clsRegistry.h"
#include "tray/Notification.h"

const wchar_t* const kSettingsKey = L"HKLM\\Software\\Kivora\\1.5\\";

namespace {

const std::wstring kNotePrefix = L"Note";

std::wstring NotePath(const std::wstring& name) { return kSettingsKey + name + L"\\"; }

void ReadNote(frmNote& note, const std::wstring& path) {
    auto text = [&](const wchar_t* name) { return AsText(Registry().GetValue(path + name, REG_TYPE_SZ)); };
    auto number = [&](const wchar_t* name) {
        return AsNumber(Registry().GetValue(path + name, REG_TYPE_DWORD));
    };
    note.Text(text(L"Text"));
    note.CreationTime(text(L"CreationTime"));
    note.Color(number(L"Color"));
    note.FontNoteSize(number(L"FontSize"));
    note.FontNoteBold(number(L"FontBold") != 0);
    note.FontNoteItalic(number(L"FontItalic") != 0);
    note.FontNoteUnderlined(number(L"FontUnderlined") != 0);
    note.FontNoteAlignment(number(L"FontAlignment"));
    note.HiddenForeground(number(L"Foreground") != 0);
    const double left = number(L"X"), top = number(L"Y");
    const double width = number(L"Width"), height = number(L"Height");
    note.Place(left, top, width, height);
}

void WriteNote(const frmNote& note, const std::wstring& path) {
    auto text = [&](const wchar_t* name, const std::wstring& value) {
        Registry().SetValue(path + name, REG_TYPE_SZ, value);
    };
    auto number = [&](const wchar_t* name, double value) {
        Registry().SetValue(path + name, REG_TYPE_DWORD, value);
    };
    number(L"X", note.Left());
    number(L"Y", note.Top());
    number(L"Width", note.Width());
    number(L"Height", note.Height());
    text(L"Text", note.Text());
    text(L"CreationTime", note.CreationTime());
    number(L"Color", note.Color());
    number(L"FontSize", note.FontNoteSize());
    number(L"FontBold", note.FontNoteBold());
    number(L"FontItalic", note.FontNoteItalic());
    number(L"FontUnderlined", note.FontNoteUnderlined());
    number(L"FontAlignment", note.FontNoteAlignment());
    number(L"Foreground", note.Foreground());
}

}  // namespace

void NoteUnloader::operator()(frmNote* note) const { note->Unload(); }

void NoteStore::LoadNotes() {
    RegistryTransaction image;
    AutostartEnabled =
        AsNumber(Registry().GetValue(std::wstring(kSettingsKey) + L"Autostart", REG_TYPE_DWORD)) != 0;
    std::vector<std::wstring> names;
    if (Registry().EnumKeys(kSettingsKey, names) != 0) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (names[i].compare(0, kNotePrefix.size(), kNotePrefix) != 0) continue;
            NotePtr note = CreateNote();
            ReadNote(*note, NotePath(names[i]));
            lastNoteNumber_ = static_cast<std::int32_t>(i);
            note->NoteKey(lastNoteNumber_);
            notes_.push_back(std::move(note));
        }
    }
    LoadAddressBook();
}

void NoteStore::SaveNotes() {
    Notification::MenusChanged();  // whatever a menu depends on is saved
    RegistryTransaction image;
    Registry().DeleteKey(kSettingsKey);
    Registry().SetValue(std::wstring(kSettingsKey) + L"Autostart", REG_TYPE_DWORD, AutostartEnabled ? 1 : 0);
    int number = 0;
    for (const NotePtr& note : notes_) {
        WriteNote(*note, NotePath(kNotePrefix + std::to_wstring(number)));
        ++number;
    }
    SaveAddressBook();
    image.Commit();
}

frmNote& NoteStore::AddNote(NotePtr note) {
    note->NoteKey(++lastNoteNumber_);
    note->PlaceAsNew();
    note->AutoSize();
    note->ShowStacked();
    frmNote& added = *note;
    notes_.push_back(std::move(note));
    SaveNotes();
    return added;
}

frmNote& NoteStore::AdoptNote(NotePtr note) {
    note->NoteKey(++lastNoteNumber_);
    frmNote& added = *note;
    notes_.push_back(std::move(note));
    if (OnLongText && StoredLength(added.Text()) > kLongestStoredText) OnLongText(added);
    return added;
}

void NoteStore::DeleteNote(frmNote& note) {
    const auto place =
        std::find_if(notes_.begin(), notes_.end(), [&](const NotePtr& each) { return each.get() == &note; });
    if (place == notes_.end()) return;
    if (OnDelete) OnDelete(note);
    ForgetMinimizedNote(note);
    notes_.erase(place);
    SaveNotes();
}

void NoteStore::UnloadAllNotes() {
    toShow_.reset();
    // Not one by one through the toolkit's list of what is to go: that is searched for every window.
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
    for (const NotePtr& note : notes_) {
        if (keys.contains(note->NoteKey())) note->Minimized(false);
    }
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
    for (frmNote* const note : InStackingOrder()) note->ShowStacked();
}

void NoteStore::ShowNotes(std::function<void()> then) {
    const std::vector<frmNote*> notes = InStackingOrder();
    toShow_ = std::make_shared<ToShow>(ToShow{{notes.begin(), notes.end()}, std::move(then)});
    ShowNextNotes();
}

void NoteStore::ShowNextNotes() {
    constexpr int kAtOnce = 10;
    frmNote* last = nullptr;
    for (int shown = 0; shown < kAtOnce && !toShow_->notes.empty();) {
        frmNote* const note = toShow_->notes.front();
        toShow_->notes.pop_front();
        if (!note || note->Minimized() || note->IsShown()) continue;
        note->ShowStacked();
        last = note;
        ++shown;
    }
    if (!last) {
        const std::shared_ptr<ToShow> done = std::exchange(toShow_, nullptr);
        done->then();
        return;
    }
    // What the display has to say of a few windows is heard before the next are shown, or it would pile up.
    WhenOnScreen(*last, [this, toShow = std::weak_ptr(toShow_)] {
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

std::size_t NoteStore::CountMinimizedByCommand() const {
    return minimizedByCommand_ ? minimizedByCommand_->size() : 0;
}

frmNote* NoteStore::Find(std::int32_t noteKey) const {
    for (const NotePtr& note : notes_) {
        if (note->NoteKey() == noteKey) return note.get();
    }
    return nullptr;
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
