#include "dialogs/Help.h"

#include "base/ByteSource.h"
#include "base/FileName.h"
#include "dialogs/Message.h"
#include "dialogs/OpenAddress.h"

namespace {

// The pages lie in a folder beside the program, or where Linux packages put them: in share/ beside bin/.
std::filesystem::path HelpFile(const std::wstring& page) {
    const std::filesystem::path program = FilePath(ProgramFolder());
    const std::filesystem::path beside = program / FilePath(L"hilfe") / FilePath(page);
    const std::filesystem::path shared =
        program.parent_path() / FilePath(L"share/kivora/hilfe") / FilePath(page);
    return !IsFile(beside) && IsFile(shared) ? shared : beside;
}

}  // namespace

void ShowHelp(const std::wstring& page) {
    const std::filesystem::path file = HelpFile(page);
    // Asked here, because whoever opens pages would notice only later that there is none.
    if (IsFile(file) && OpenAddress(FileName(file))) return;
    ShowMessage(L"Die Hilfe-Datei " + ShownFileName(FileName(file)) +
                    L" konnte nicht aufgerufen werden.\r\n"
                    L"Stellen Sie bitte sicher, dass Kivora korrekt installiert wurde, die Hilfe-Dateien im "
                    L"Unterordner \"Hilfe\" vorhanden sind und ein Internet-Browser installiert ist.",
                kCritical, L"Hilfe-Datei konnte nicht aufgerufen werden");
}
