#include "app/KeptCommands.h"

#include "base/Text.h"
#include "model/KeepReason.h"
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

// In lines of a terminal.
std::wstring Reason(const KeepResult& result) {
    std::wstring text = ReasonText(result);
    std::erase(text, L'\r');
    return text + L"\n";
}

CommandAnswer NotDone(const std::wstring& what, const KeepResult& why) {
    return {1, what + L"\n" + Reason(why)};
}

}  // namespace

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

CommandAnswer CarryOutAlone(const Command& command) {
    if (command.name == L"--help") return {0, UsageText()};
    if (command.name == L"--version") return {0, L"Kivora " + FromUtf8(KIVORA_VERSION) + L"\n"};
    if (command.name == L"--receive") return SetReceiveFrom(command, nullptr);
    return {2, L"unbekannter Befehl " + command.name + L"\n"};
}
