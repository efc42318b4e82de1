#include "model/KeepReason.h"

#include "base/Text.h"

namespace {

const wchar_t* Sentences(KeepFailure failure) {
    switch (failure) {
        case KeepFailure::None:
            break;
        case KeepFailure::NoAccess:
            return L"Kivora darf die Datei mit Ihren Notizen nicht öffnen oder nicht ändern. Prüfen Sie, ob "
                   L"die Datei und ihr Ordner Ihnen gehören und nicht schreibgeschützt sind.";
        case KeepFailure::ReadOnly:
            return L"Das Laufwerk mit Ihren Notizen lässt keine Änderungen zu. Heben Sie den Schreibschutz "
                   L"auf; oft hilft es auch, den Computer neu zu starten.";
        case KeepFailure::DiskFull:
            return L"Auf dem Laufwerk mit Ihren Notizen ist kein Platz mehr frei. Löschen Sie dort Dateien, "
                   L"die Sie nicht mehr brauchen.";
        case KeepFailure::Locked:
            return L"Ein anderes Programm hält die Datei mit Ihren Notizen fest. Warten Sie, bis es fertig "
                   L"ist, oder beenden Sie es.";
        case KeepFailure::Damaged:
            return L"Die Datei mit Ihren Notizen ist beschädigt. Damit nicht noch mehr verloren geht, ändert "
                   L"Kivora sie nicht. Sichern Sie Ihre Notizen in eine Datei und starten Sie Kivora neu.";
        case KeepFailure::TooNew:
            return L"Die Datei mit Ihren Notizen stammt von einer neueren Version von Kivora. Verwenden Sie "
                   L"diese Version.";
        case KeepFailure::Failed:
            return L"Beim Zugriff auf die Datei mit Ihren Notizen ist ein Fehler aufgetreten. Prüfen Sie, ob "
                   L"das Laufwerk in Ordnung ist.";
    }
    return L"";
}

}  // namespace

std::wstring ReasonText(const KeepResult& result) {
    std::wstring text = Sentences(result.failure);
    if (!result.Kept() && !result.detail.empty()) text += L"\r\n(" + FromUtf8(result.detail) + L")";
    return text;
}

KeepResult FailureOf(const std::error_code& error) {
    if (!error) return {};
    const KeepFailure failure =
        error == std::errc::no_space_on_device      ? KeepFailure::DiskFull
        : error == std::errc::read_only_file_system ? KeepFailure::ReadOnly
        : error == std::errc::permission_denied || error == std::errc::operation_not_permitted
            ? KeepFailure::NoAccess
            : KeepFailure::Failed;
    return {failure, error.message()};
}
