#include "app/CopyCommands.h"

#include <wx/app.h>

#include "app/KeptCommands.h"
#include "app/KivoraApp.h"
#include "app/Receiving.h"
#include "base/DateText.h"
#include "base/FileName.h"
#include "base/Text.h"
#include "dialogs/Wait.h"
#include "exchange/ImportNotes.h"
#include "model/KeepReason.h"
#include "notes/NoteStore.h"
#include "notes/basNotes.h"

namespace {

void Later(std::function<void()> open) {
    wxTheApp->CallAfter([open = std::move(open)] {
        if (!IsQuitting()) Guarded(open);
    });
}

std::wstring Joined(const std::vector<std::wstring>& words) {
    std::wstring text;
    for (const std::wstring& word : words) text.append(text.empty() ? L"" : L" ").append(word);
    return text;
}

}  // namespace

CommandAnswer CopyCommands::CarryOut(const Command& command) {
    if (command.name == L"--new") return New(command.arguments);
    if (command.name == L"--import") return Import(command.arguments);
    if (command.name == L"--list") return ListNotes(store_.CopyNotes());
    if (command.name == L"--export") return ExportNotes(store_.CopyNotes(), command.arguments[0]);
    if (command.name == L"--find") {
        Later([find = dialogs_.find, words = Joined(command.arguments)] { find(words); });
        return {};
    }
    if (command.name == L"--toggle") {
        Toggle();
        return {};
    }
    if (command.name == L"--print") {
        if (store_.CountNotes() == 0) return {1, L"Es gibt keine Notizen.\n"};
        Later(dialogs_.print);
        return {};
    }
    CommandAnswer answer = SetReceiveFrom(command, [this](ReceiveFrom from) { receiving_.From(from); });
    if (answer.exitCode == 0 && receiving_.Now().portTaken)
        answer.text += L"Zurzeit kommen keine an: Ein anderes Programm belegt den Port 5998.\n";
    return answer;
}

CommandAnswer CopyCommands::New(const std::vector<std::wstring>& words) {
    if (words.empty()) {
        Later([this] { NewNote(store_); });
        return {};
    }
    const std::wstring text = AsNoteText(Joined(words));
    if (text.empty()) return {1, L"Die Notiz hätte keinen Text.\n"};
    if (!ComesBack(text)) return {1, L"Der Text ist zu lang für eine Notiz.\n"};
    const KeepResult kept = store_.AddNoteIfKept({.text = text, .creationTime = CurrentCreationTime()});
    if (!kept.Kept()) return NotDone(L"Die Notiz konnte nicht gespeichert werden.", kept);
    return {};
}

CommandAnswer CopyCommands::Import(const std::vector<std::wstring>& files) {
    CommandAnswer answer;
    for (const std::wstring& file : files) {
        const std::optional<std::wstring> reason = WhyNotImported(store_, file);
        if (!reason) {
            answer.text += L"Die Notizen aus " + ShownFileName(file) + L" wurden importiert.\n";
            continue;
        }
        answer.exitCode = 1;
        answer.text += InTerminal(ImportFailureText(file, *reason));
    }
    store_.SaveNotes();
    store_.ApplyForeground();
    return answer;
}

void CopyCommands::Toggle() {
    if (store_.CountVisibleNotes() > 0) {
        store_.MinimizeAll();
    } else if (store_.CountMinimizedByCommand() > 0) {
        store_.UnMinimizeAll();
    } else {
        for (const NotePtr& note : store_.Notes()) note->Minimized(false);
    }
}

std::optional<std::wstring> WhyNotImported(NoteStore& store, const std::wstring& fileName) {
    const std::size_t before = store.CountNotes();
    const bool imported = ImportNotes(store, fileName);
    const KeepResult kept = store.WriteImage();
    const bool any = store.CountNotes() > before;
    // Notes of which the user hears that they failed must not come with those of the next file.
    while (!kept.Kept() && store.CountNotes() > before) store.TakeBack(*store.Notes().back());
    if (imported && kept.Kept()) return std::nullopt;
    return any ? ReasonText(kept) : std::wstring();
}
