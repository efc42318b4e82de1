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
    WaitUntilShown(1);
    const std::wstring file = FromUtf8(File("Eigene Notizen ü.kvr", L"aus der Shell"));
    SHELLEXECUTEINFOW order{};
    order.cbSize = sizeof order;
    order.fMask = SEE_MASK_NOCLOSEPROCESS;
    order.lpFile = file.c_str();
    order.nShow = SW_SHOWNORMAL;
    ASSERT_TRUE(ShellExecuteExW(&order));
    // It is nobody else's to end, and would get into the way of the next test.
    EXPECT_EQ(WaitForSingleObject(order.hProcess, 5000), WAIT_OBJECT_0);
    CloseHandle(order.hProcess);
    EXPECT_TRUE(Eventually([] { return SavedTexts() == Texts{L"aus der Shell"}; }));
    EXPECT_FALSE(program.Ended());
}

}  // namespace
