// What becomes of files that the command line names.
#include "app/Startup.h"
#include "tests/exchange/ExchangeTest.h"

TEST_F(ExchangeTest, FilesOfTheCommandLineAreTakenInAndToldOf) {
    const std::wstring good = FileName(Write(L"gut.kvr", FileBytes({{.Text = L"eins"}})));
    const std::wstring gone = Name(L"fehlt.kvr");
    Program program(nullptr);
    EXPECT_FALSE(program.ImportFiles({good, gone}));
    EXPECT_EQ(ReadStoredImage().notes.size(), 1u);
    program.ReportSilentCopy({good});
    EXPECT_EQ(
        messages,
        (Messages{
            L"Importieren erfolgreich|64|Die Notizen aus " + good + L" wurden erfolgreich importiert.",
            L"Fehler beim Importieren|16|" + ImportFailureText(gone),
            L"Fehler|16|Die Datei " + good + L" konnte nicht importiert werden.\r\nKivora reagiert nicht."}));
}
