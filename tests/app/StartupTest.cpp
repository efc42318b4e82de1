// What becomes of files that the command line names.
#include "app/EmergencyFile.h"
#include "app/Startup.h"
#include "tests/app/OtherCopy.h"
#include "tests/exchange/ExchangeTest.h"

TEST_F(ExchangeTest, FilesOfTheCommandLineAreTakenInAndToldOf) {
    const auto file = [this](const wchar_t* name) {
        return FileName(Write(name, FileBytes({{.Text = name}})));
    };
    const std::wstring gone = Name(L"fehlt.kvr"), first = file(L"1.kvr"), second = file(L"2.kvr"),
                       last = file(L"3.kvr");
    Program(nullptr).ReportSilentCopy({first});
    RunningCopy::Receive receive;
    Program program(std::make_unique<RunningCopyInTest>(receive));
    // Other copies hand files over while messages are open. In the end nobody is left to be told.
    onMessage = [&] {
        if (messages.size() == 3) {
            receive({L"", {second}});
            EXPECT_EQ(receive({L"--find", {L"eins"}}).exitCode, 1);
        }
        if (messages.size() != 4) return;
        for (const std::wstring& name : {gone, last}) receive({L"", {name}});
        program.EndAtOnce();
    };
    EXPECT_FALSE(program.ImportFiles({first, gone}));
    EXPECT_EQ(ReadStoredImage().notes.size(), 3u);
    const auto told = [](const std::wstring& name) {
        return L"Importieren erfolgreich|64|Die Notizen aus " + name + L" wurden erfolgreich importiert.";
    };
    EXPECT_EQ(messages, (Messages{L"Fehler|16|Die Datei " + first +
                                      L" konnte nicht importiert werden.\r\nKivora reagiert nicht.",
                                  told(first), L"Fehler beim Importieren|16|" + ImportFailureText(gone),
                                  told(second)}));
    const std::vector<std::filesystem::path> left = EmergencyFiles(EmergencyFolders());
    ASSERT_EQ(left.size(), 1u);
    EXPECT_EQ(ReadEmergencyBytes(Content(left[0]))->files, Messages{gone});
    std::filesystem::remove(left[0]);
}
