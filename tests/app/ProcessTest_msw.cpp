#include <windows.h>

#include <shellapi.h>

#include "tests/app/ProcessTest.h"

namespace {

using namespace std::chrono_literals;

TEST_F(ProcessTest, SaysWhatItCanBeStartedWith) {
    Process help({"--help"});
    EXPECT_EQ(help.Wait(), 0);
    EXPECT_TRUE(help.Output().starts_with("Aufruf: kivora")) << help.Output();
    Process version({"--version"});
    EXPECT_EQ(version.Wait(), 0);
    EXPECT_EQ(version.Output(), "Kivora 1.6.1\n");
}

// What stands before the first slash cannot be meant: nothing is loaded or saved.
TEST_F(ProcessTest, RefusesAnUnreadableCommandLine) {
    Import(L"eins");
    Process wrong({}, std::wstring(L" unfug /a.kvr"));
    const std::string message = WaitForWindow("Fehler");
    ASSERT_FALSE(message.empty());
    Press(message, "Return");
    EXPECT_EQ(wrong.Wait(), 2);
    EXPECT_EQ(SavedTexts(), Texts{L"eins"});
}

// As the shell does it: the program has entered itself, and the name comes unquoted behind a slash.
TEST_F(ProcessTest, TheShellOpensExportFiles) {
    Process program({});
    ASSERT_TRUE(
        Eventually([] { return Registry().KeyExists(L"HKCR\\Kivora.Export\\shell\\print\\command"); }));
    const std::wstring file = FromUtf8(File("Eigene Notizen ü.kvr", L"aus der Shell"));
    EXPECT_GT(reinterpret_cast<INT_PTR>(
                  ShellExecuteW(nullptr, nullptr, file.c_str(), nullptr, nullptr, SW_SHOWNORMAL)),
              32);
    EXPECT_TRUE(Eventually([] { return SavedTexts() == Texts{L"aus der Shell"}; }));
    EXPECT_FALSE(program.Ended());
}

}  // namespace
