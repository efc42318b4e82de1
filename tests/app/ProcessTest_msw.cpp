#include <windows.h>

#include <shellapi.h>

#include "base/CaseFold.h"
#include "base/DataFolder.h"
#include "tests/app/ProcessTest.h"
#include "tests/support/Files.h"

namespace {

std::wstring ProgramFile() { return std::filesystem::absolute(FromUtf8(KIVORA_PROGRAM)).native(); }

// The token of the same user without an administrator's rights.
HANDLE LimitedToken() {
    HANDLE own = nullptr, limited = nullptr;
    OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY | TOKEN_DUPLICATE, &own);
    TOKEN_LINKED_TOKEN linked{};
    DWORD size = 0;
    GetTokenInformation(own, TokenLinkedToken, &linked, sizeof linked, &size);
    DuplicateTokenEx(linked.LinkedToken, TOKEN_ALL_ACCESS, nullptr, SecurityImpersonation, TokenPrimary,
                     &limited);
    CloseHandle(linked.LinkedToken);
    CloseHandle(own);
    return limited;
}

// The unnamed value as Windows has it for the user.
std::wstring CommandOf(const wchar_t* verb) {
    const std::wstring key = std::wstring(L"Kivora.Export\\shell\\") + verb + L"\\command";
    wchar_t text[1024] = L"";
    DWORD size = sizeof text;
    RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text, &size);
    return text;
}

BOOL CALLBACK TypeInto(HWND window, LPARAM text) {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    const bool many = (GetWindowLongW(window, GWL_STYLE) & ES_MULTILINE) != 0;
    if (!many || InCapitals(name).find(L"EDIT") == std::wstring::npos) return TRUE;
    for (const wchar_t character : *reinterpret_cast<const std::wstring*>(text))
        SendMessageW(window, WM_CHAR, character, 0);
    return FALSE;
}

// As the shell opens it, until the program that was started for it has ended.
void Open(const std::wstring& file) {
    SHELLEXECUTEINFOW order{};
    order.cbSize = sizeof order;
    order.fMask = SEE_MASK_NOCLOSEPROCESS;
    order.lpFile = file.c_str();
    order.nShow = SW_SHOWNORMAL;
    ASSERT_TRUE(ShellExecuteExW(&order));
    // It is nobody else's to end, and would get into the way of the next test.
    EXPECT_EQ(WaitForSingleObject(order.hProcess, 5000), WAIT_OBJECT_0);
    CloseHandle(order.hProcess);
}

// A box would stop the script that throws the answer away.
TEST_F(ProcessTest, SaysNothingWhereTheOutputGoesNowhere) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    const HANDLE nowhere = CreateFileW(L"NUL", GENERIC_WRITE, 0, &inherited, OPEN_EXISTING, 0, nullptr);
    Process version(ProgramFile(), L"\"" + ProgramFile() + L"\" --version", nullptr, nowhere);
    CloseHandle(nowhere);
    EXPECT_TRUE(version.Wait());
}

// What stands before the first slash cannot be meant: nothing is loaded or saved.
TEST_F(ProcessTest, RefusesAnUnreadableCommandLine) {
    Import(L"eins");
    Process wrong(ProgramFile(), L"\"" + ProgramFile() + L"\" unfug /a.kvr");
    const std::string message = WaitForWindow("Fehler");
    ASSERT_FALSE(message.empty());
    Press(message, "Return");
    EXPECT_EQ(wrong.Wait(), 2);
    EXPECT_EQ(SavedTexts(), Texts{L"eins"});
}

// The code page lacks characters of the path under which the program enters itself, and the shell may start
// it with that path unquoted.
TEST_F(ProcessTest, TheShellOpensExportFilesWithItWhateverItsFolder) {
    const std::filesystem::path folder = TestFolder() / L"Σημειώσεις und mehr";
    std::filesystem::create_directories(folder);
    const std::wstring program = (folder / L"kivora.exe").native();
    ASSERT_TRUE(CopyFileW(ProgramFile().c_str(), program.c_str(), FALSE));
    const Process first(program, L"\"" + program + L"\"");
    WaitUntilShown(1);
    const std::wstring registered = CommandOf(L"open");
    EXPECT_TRUE(std::filesystem::equivalent(registered.substr(0, registered.find(L" /%1")), program));
    Open(FromUtf8(File("eins.kvr", L"aus der Shell")));
    EXPECT_TRUE(Eventually([] { return SavedTexts() == Texts{L"aus der Shell"}; }));
    Process unquoted(program, program + L" /" + FromUtf8(File("zwei.kvr", L"ohne Zeichen")));
    EXPECT_EQ(unquoted.Wait(), 0);
    EXPECT_TRUE(Eventually([] { return SavedTexts() == Texts{L"aus der Shell", L"ohne Zeichen"}; }));
}

// With rights that the desktop does not have it shows other notes than the user's.
TEST_F(ProcessTest, SaysThatItShowsTheNotesOfAllUsers) {
    const HANDLE limited = LimitedToken();
    const Process shell(ProgramPath(), L"\"" + ProgramPath() + L"\" --shell", limited);
    CloseHandle(limited);
    ASSERT_TRUE(Eventually([] { return GetShellWindow() != nullptr; }));
    Process program({});
    EXPECT_FALSE(WaitForWindow("Notizen aller Benutzer").empty());
    program.AskToEnd();
    EXPECT_EQ(program.Wait(), 0);
}

// Nobody can be asked any more what is to become of it.
TEST_F(ProcessTest, WhatIsTypedWhenTheSessionEndsGoesToTheBin) {
    const std::filesystem::path bin = DataFolder() / L"papierkorb";
    std::filesystem::remove_all(bin);
    Process program({});
    WaitUntilShown(1);
    PostMessageW(FindWindowW(L"Kivora.Notification", nullptr), WM_MOUSEMOVE, 1, WM_LBUTTONDBLCLK);
    const std::string dialog = WaitForWindow("Neue Notiz");
    ASSERT_FALSE(dialog.empty());
    std::wstring text = L"angefangen";
    EnumChildWindows(FindWindowW(nullptr, L"Neue Notiz"), TypeInto, reinterpret_cast<LPARAM>(&text));
    program.AskToEnd();
    EXPECT_EQ(program.Wait(), 0);
    ASSERT_TRUE(std::filesystem::is_directory(bin));
    EXPECT_NE(Content(std::filesystem::directory_iterator(bin)->path()).find("angefangen"),
              std::string::npos);
}

}  // namespace

// Another process than that of the tests is the shell, with other rights.
int ServeOtherwise(int argc, char** argv) {
    if (argc < 2 || std::string_view(argv[1]) != "--shell") return -1;
    const HWND window = CreateWindowW(L"STATIC", L"", WS_OVERLAPPED, 0, 0, 1, 1, nullptr, nullptr,
                                      GetModuleHandleW(nullptr), nullptr);
    // In no header.
    using Function = BOOL(WINAPI*)(HWND);
    const auto set = reinterpret_cast<Function>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"user32.dll"), "SetShellWindow")));
    set(window);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) DispatchMessageW(&message);
    return 0;
}
