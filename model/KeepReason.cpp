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

std::wstring FileReasonText(const std::error_code& error) {
    const KeepResult result = FailureOf(error);
    const wchar_t* sentence = L"";
    switch (result.failure) {
        case KeepFailure::NoAccess:
            sentence = L"Sie dürfen diese Datei oder ihren Ordner nicht ändern.";
            break;
        case KeepFailure::ReadOnly:
            sentence = L"Das Laufwerk lässt keine Änderungen zu.";
            break;
        case KeepFailure::DiskFull:
            sentence = L"Auf dem Laufwerk ist kein Platz mehr frei.";
            break;
        case KeepFailure::Locked:
            sentence = L"Ein anderes Programm hält die Datei fest.";
            break;
        default:
            if (error != std::errc::io_error) return {};
            sentence = L"Das Laufwerk hat einen Fehler gemeldet.";
    }
    return std::wstring(sentence) + L"\r\n(" + FromUtf8(result.detail) + L")";
}
