#include "exchange/KeptNotes.h"

#include <wx/app.h>

#include <map>

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

const wchar_t* const kBin = L"papierkorb";

// Of the texts in one file; the import takes files twice as large.
constexpr std::size_t kFileCharacters = kMostImportedCharacters / 2;

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

KeepResult KeepInFiles(const std::vector<Note>& notes, const wchar_t* folder, std::size_t most) {
    KeepResult kept;
    for (auto next = notes.begin(); next != notes.end() && kept.Kept();) {
        std::vector<Note> together;
        for (std::size_t characters = 0; next != notes.end() && characters < kFileCharacters; ++next) {
            characters += next->text.size();
            together.push_back(*next);
        }
        kept = Keep(together, folder, most);
    }
    return kept;
}

NoteFolder Bin() { return NoteFolder(DataFolder() / kBin); }

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

KeepResult KeepDeletedNote(const Note& note) { return Keep({note}, kBin, kDeletedNotes); }

KeepResult KeepDeletedNotes(const std::vector<Note>& notes) {
    return KeepInFiles(notes, kBin, kDeletedNotes);
}

KeepResult KeepDeletedFlood(const std::vector<Note>& notes) {
    return KeepInFiles(notes, L"papierkorb/flut", kDeletedFloods);
}

NoteBin::Content KeptBin::Read() const {
    Content content;
    if (DataFolder().empty()) {
        content.read = {KeepFailure::NoAccess};
        return content;
    }
    try {
        for (NoteFolder::File& file : Bin().Files()) {
            if (file.notes.empty()) ++content.unreadable;
            const std::wstring when = NoteFolder::KeptWhen(file.name);
            for (Note& note : file.notes) content.notes.push_back({file.name, when, std::move(note)});
        }
    } catch (const std::system_error& failure) {
        content.read = FailureOf(failure.code());
    }
    for (const BinnedNote& stuck : stuck_) std::erase(content.notes, stuck);
    return content;
}

KeepResult KeptBin::Remove(const std::vector<BinnedNote>& notes) {
    std::map<std::wstring, std::vector<Note>> files;
    for (const BinnedNote& each : notes) files[each.file].push_back(each.note);
    KeepResult removed;
    for (const auto& [name, taken] : files) {
        KeepResult result = FailureOf(Bin().TakeOut(name, taken));
        if (result.Kept()) continue;
        removed = std::move(result);
        for (const BinnedNote& each : notes) {
            if (each.file == name) stuck_.push_back(each);
        }
    }
    return removed;
}

void TellOfUnkeptNote(const Note& note) {
    std::wstring& texts = UnkeptTexts();
    if (texts.empty()) wxTheApp->CallAfter([] { TellOfUnkeptTexts(); });
    if (!texts.empty()) texts += L"\r\n\r\n";
    texts += note.text;
}
