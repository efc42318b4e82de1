#include "app/KeptCommands.h"

#include <optional>

#include "base/FileName.h"
#include "base/NewFile.h"
#include "base/Text.h"
#include "exchange/KeptFile.h"
#include "model/KeepReason.h"
#include "model/StoredImage.h"
#include "registry/RegistryHealth.h"

namespace {

const wchar_t* Described(ReceiveFrom from) {
    switch (from) {
        case ReceiveFrom::All:
            return L"all: Notizen werden von allen Computern angenommen.\n";
        case ReceiveFrom::Known:
            return L"known: Notizen werden nur von Computern des Adressbuchs angenommen.\n";
        case ReceiveFrom::None:
            break;
    }
    return L"none: Es werden keine Notizen angenommen.\n";
}

// Nothing where it cannot be read.
std::optional<std::vector<Note>> KeptNotes() {
    StoredImage image = ReadStoredImage();
    if (!HealthOfRegistry().reading.Kept()) return std::nullopt;
    std::vector<Note> notes;
    for (StoredNote& stored : image.notes) {
        if (!stored.tooLong.empty()) stored.note.text = std::move(stored.tooLong);
        notes.push_back(std::move(stored.note));
    }
    return notes;
}

}  // namespace

std::wstring InTerminal(std::wstring message) {
    std::erase(message, L'\r');
    if (!message.ends_with(L'\n')) message += L'\n';
    return message;
}

CommandAnswer NotDone(const std::wstring& what, const KeepResult& why) {
    return {1, InTerminal(what + L"\n" + ReasonText(why))};
}

CommandAnswer ListNotes(const std::vector<Note>& notes) {
    CommandAnswer answer;
    for (const Note& note : notes)
        answer.text += Flattened(note.creationTime) + L"\t" + Flattened(note.text) + L"\n";
    return answer;
}

CommandAnswer ExportNotes(const std::vector<Note>& notes, const std::wstring& fileName) {
    if (const std::error_code failed = SaveFile(FilePath(fileName), KeptFileBytes(notes)))
        return NotDone(L"Die Datei " + ShownFileName(fileName) + L" konnte nicht geschrieben werden.",
                       FailureOf(failed));
    return {0, std::to_wstring(notes.size()) + (notes.size() == 1 ? L" Notiz" : L" Notizen") +
                   L" in die Datei " + ShownFileName(fileName) + L" geschrieben.\n"};
}

CommandAnswer SetReceiveFrom(const Command& command, const std::function<void(ReceiveFrom)>& apply) {
    if (command.arguments.empty()) {
        const KeepResult reading = HealthOfRegistry().reading;
        if (!reading.Kept()) return NotDone(L"Die Einstellung kann nicht gelesen werden.", reading);
        return {0, Described(ReadReceiveFrom())};
    }
    const auto from = ReceiveFromOf(command.arguments[0]);
    if (!from) return {2, L"zu --receive gehört all, known oder none\n"};
    if (const KeepResult kept = WriteReceiveFrom(*from); !kept.Kept())
        return NotDone(L"Es bleibt, wie es war, denn die Einstellung konnte nicht gespeichert werden.", kept);
    if (apply) apply(*from);
    return {0, Described(*from)};
}

// What only a resident copy can do comes here from one that is none.
CommandAnswer CarryOutAlone(const Command& command) {
    if (command.name == L"--help") return {0, UsageText()};
    if (command.name == L"--version") return {0, L"Kivora " + FromUtf8(KIVORA_VERSION) + L"\n"};
    if (command.name == L"--receive") return SetReceiveFrom(command, nullptr);
    if (command.name != L"--list" && command.name != L"--export")
        return {1, L"Kivora importiert gerade Dateien. Versuchen Sie es danach noch einmal.\n"};
    const auto notes = KeptNotes();
    if (!notes) return NotDone(L"Die Notizen können nicht gelesen werden.", HealthOfRegistry().reading);
    return command.name == L"--list" ? ListNotes(*notes) : ExportNotes(*notes, command.arguments[0]);
}
