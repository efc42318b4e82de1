#include "model/KeepReason.h"

#include "base/FileName.h"

namespace {

// %1 is the file.
const wchar_t* Sentences(KeepFailure failure) {
    switch (failure) {
        case KeepFailure::None:
            break;
        case KeepFailure::NoAccess:
            return L"Kivora darf %1 nicht öffnen oder nicht ändern. Prüfen Sie, ob die Datei und ihr Ordner "
                   L"Ihnen gehören und nicht schreibgeschützt sind.";
        case KeepFailure::ReadOnly:
            return L"Das Laufwerk, auf dem %1 liegt, lässt keine Änderungen zu. Heben Sie den "
                   L"Schreibschutz auf; oft hilft es auch, den Computer neu zu starten.";
        case KeepFailure::DiskFull:
            return L"Auf dem Laufwerk, auf dem %1 liegt, ist kein Platz mehr frei. Löschen Sie dort Dateien, "
                   L"die Sie nicht mehr brauchen.";
        case KeepFailure::OverQuota:
            return L"Der Platz, der Ihnen auf dem Laufwerk zusteht, auf dem %1 liegt, ist aufgebraucht. "
                   L"Löschen Sie dort eigene Dateien, die Sie nicht mehr brauchen.";
        case KeepFailure::Locked:
            return L"Ein anderes Programm hält %1 fest. Warten Sie, bis es fertig ist, oder beenden Sie es.";
        case KeepFailure::BadDisk:
            return L"Das Laufwerk, auf dem %1 liegt, meldet einen Fehler beim Lesen oder Schreiben. Prüfen "
                   L"Sie, ob es angeschlossen und in Ordnung ist.";
        case KeepFailure::NoFile:
            return L"Wo %1 oder ihr Ordner sein soll, liegt etwas anderes unter demselben Namen. Benennen "
                   L"Sie es um oder verschieben Sie es.";
        case KeepFailure::DeadLink:
            return L"Wo %1 sein soll, liegt eine Verknüpfung, deren Ziel fehlt. Schließen Sie das Laufwerk "
                   L"an, auf dem das Ziel liegt, oder stellen Sie das Ziel wieder her.";
        case KeepFailure::Damaged:
            return L"Die Datei mit Ihren Notizen ist beschädigt. Damit nicht noch mehr verloren geht, ändert "
                   L"Kivora sie nicht. Sichern Sie Ihre Notizen in eine Datei und starten Sie Kivora neu.";
        case KeepFailure::TooNew:
            return L"Die Datei mit Ihren Notizen stammt von einer neueren Version von Kivora. Verwenden Sie "
                   L"diese Version.";
        case KeepFailure::Failed:
            return L"Beim Zugriff auf %1 ist ein unerwarteter Fehler aufgetreten.";
    }
    return L"";
}

// What is to be done is done to the file itself.
bool HasToBeFound(KeepFailure failure) {
    return failure == KeepFailure::NoAccess || failure == KeepFailure::NoFile ||
           failure == KeepFailure::DeadLink;
}

}  // namespace

std::wstring ReasonText(const KeepResult& result, const std::wstring& file) {
    std::wstring text = Sentences(result.failure);
    if (const std::size_t at = text.find(L"%1"); at != text.npos) text.replace(at, 2, file);
    if (result.failure == KeepFailure::Failed && result.code != 0)
        text += L" Seine Nummer ist " + std::to_wstring(result.code) + L".";
    if (HasToBeFound(result.failure) && !result.file.empty())
        text += L"\r\nEs geht um:\r\n" + ShownFileName(result.file);
    return text;
}

std::wstring FileReasonText(const std::error_code& error) {
    switch (FailureOf(error).failure) {
        case KeepFailure::NoAccess:
            return L"Sie dürfen diese Datei oder ihren Ordner nicht ändern.";
        case KeepFailure::ReadOnly:
            return L"Das Laufwerk lässt keine Änderungen zu.";
        case KeepFailure::DiskFull:
            return L"Auf dem Laufwerk ist kein Platz mehr frei.";
        case KeepFailure::OverQuota:
            return L"Der Platz, der Ihnen auf dem Laufwerk zusteht, ist aufgebraucht.";
        case KeepFailure::Locked:
            return L"Ein anderes Programm hält die Datei fest.";
        case KeepFailure::BadDisk:
            return L"Das Laufwerk hat einen Fehler gemeldet.";
        default:
            return {};
    }
}
