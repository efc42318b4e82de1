#include "app/Commands.h"

#include <algorithm>

namespace {

constexpr std::size_t kAny = CommandRow::kAny;

constexpr CommandRow kCommands[] = {
    {L"--new", L"[TEXT]",
     L"neue Notiz mit diesem Text, nach einem Minuszeichen mit dem der Standardeingabe; ohne Text: öffnet "
     L"den "
     L"Dialog",
     CarriedOutBy::Copy, 0, kAny},
    {L"--find", L"[WÖRTER]",
     L"öffnet das Fenster, in dem Notizen gefunden und gelöschte zurückgeholt werden, mit diesen Wörtern im "
     L"Suchfeld",
     CarriedOutBy::Copy, 0, kAny},
    {L"--toggle", L"", L"minimiert alle Notizen; sind es schon alle: holt sie zurück", CarriedOutBy::Copy, 0,
     0},
    {L"--list", L"", L"zeigt alle Notizen, jede in einer Zeile", CarriedOutBy::CopyOrKept, 0, 0},
    {L"--export", L"DATEI", L"schreibt alle Notizen in eine Datei", CarriedOutBy::CopyOrKept, 1, 1, true},
    {L"--import", L"DATEI…", L"nimmt die Notizen der Dateien auf", CarriedOutBy::Copy, 1, kAny, true},
    {L"--print", L"", L"öffnet den Dialog zum Drucken", CarriedOutBy::Copy, 0, 0},
    {L"--receive", L"[all|known|none]",
     L"von wem Notizen angenommen werden: von allen, nur von Computern des Adressbuchs, von niemandem; "
     L"ohne Wert: zeigt, was gilt",
     CarriedOutBy::CopyOrKept, 0, 1},
    {L"--help", L"", L"zeigt diese Hilfe", CarriedOutBy::Process, 0, kAny},
    {L"--version", L"", L"zeigt die Version", CarriedOutBy::Process, 0, kAny},
};

constexpr std::size_t kColumns = 78;
constexpr std::size_t kIndent = 4;

// A paragraph in lines that fit a terminal.
std::wstring Wrapped(std::wstring_view text) {
    std::wstring lines;
    while (!text.empty()) {
        std::size_t end = text.size();
        if (end > kColumns - kIndent) end = std::min(text.rfind(L' ', kColumns - kIndent), end);
        lines.append(kIndent, L' ').append(text.substr(0, end)).append(L"\n");
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

}  // namespace

std::span<const CommandRow> Commands() { return kCommands; }

const CommandRow* FindCommand(std::wstring_view name) {
    if (name == L"-h") name = L"--help";
    const auto found = std::ranges::find(kCommands, name, [](const CommandRow& row) { return row.name; });
    return found == std::end(kCommands) ? nullptr : found;
}

std::wstring UsageText() {
    std::wstring text =
        L"Aufruf: kivora [DATEI…]\n"
        L"        kivora [print] [DATEI…]\n"
        L"        kivora BEFEHL\n"
        L"\n"
        L"Ohne Dateien startet Kivora und zeigt die Notizen auf dem Bildschirm.\n"
        L"Mit Dateien (.kvr) werden deren Notizen importiert, nach dem Wort [print] gedruckt.\n"
        L"Nach -- sind alle weiteren Wörter Dateien.\n"
        L"\n"
        L"Befehle:\n";
    for (const CommandRow& row : kCommands) {
        text.append(L"  ").append(row.name);
        if (*row.arguments) text.append(L" ").append(row.arguments);
        text.append(L"\n").append(Wrapped(row.help));
    }
    return text;
}

std::wstring Packed(const Command& command) {
    std::wstring text = std::to_wstring(command.arguments.size() + 1);
    text += L'\0';
    text.append(command.name) += L'\0';
    for (const std::wstring& argument : command.arguments) text.append(argument) += L'\0';
    return text;
}

std::optional<Command> Unpacked(std::wstring_view text) {
    std::vector<std::wstring> words;
    while (!text.empty()) {
        const std::size_t end = text.find(L'\0');
        if (end == text.npos) return std::nullopt;
        words.emplace_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    if (words.size() < 2 || words[0] != std::to_wstring(words.size() - 1)) return std::nullopt;
    return Command{words[1], {words.begin() + 2, words.end()}};
}
