#include <windows.h>

#include <shellapi.h>
#include <wx/app.h>
#include <wx/msw/private.h>
#include <wx/toplevel.h>

#include <cstdlib>
#include <filesystem>

#include "app/CommandLine.h"
#include "app/Platform.h"
#include "base/FileName.h"
#include "base/Text.h"

namespace {

// Whether the name, which may lack its ".exe", is that of the running program.
bool NamesProgram(const std::wstring& name) {
    std::error_code failed;
    return std::filesystem::equivalent(name, ProgramPath(), failed) ||
           std::filesystem::equivalent(name + L".exe", ProgramPath(), failed);
}

// What follows the program's name in the process's command line. Without quotation marks the name may have
// blanks, as it has in what the program registers.
std::wstring RawArguments() {
    const std::wstring line = GetCommandLineW();
    const bool quoted = line.starts_with(L'"');
    const std::size_t first = line.find(quoted ? L'"' : L' ', quoted ? 1 : 0);
    if (quoted && first != std::wstring::npos) return line.substr(first + 1);
    for (std::size_t end = first; end != std::wstring::npos; end = line.find(L' ', end + 1)) {
        if (NamesProgram(line.substr(0, end))) return line.substr(end);
    }
    if (first == std::wstring::npos || NamesProgram(line)) return {};
    return line.substr(first);
}

// A program with windows is given a console only when it asks for one; files, pipes and devices such as NUL
// are given to it like to others.
bool IsRedirected(HANDLE output) {
    DWORD mode = 0;
    return GetFileType(output) != FILE_TYPE_UNKNOWN && !GetConsoleMode(output, &mode);
}

// Where the shell has given the program no output of its own, that is the console it was started from. There
// is none either when it was started by a click or a key: then a box says what nobody would read otherwise.
void Write(DWORD stream, const std::wstring& text, UINT icon) {
    if (text.empty()) return;
    DWORD written = 0;
    const HANDLE given = GetStdHandle(stream);
    AttachConsole(ATTACH_PARENT_PROCESS);  // fails when it is attached already
    if (IsRedirected(given)) {
        const std::string bytes = ToUtf8(text);
        WriteFile(given, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        return;
    }
    const HANDLE console =
        CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
    if (console == INVALID_HANDLE_VALUE) {
        MessageBoxW(nullptr, text.c_str(), L"Kivora", icon);
        return;
    }
    WriteConsoleW(console, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(console);
}

// The words of the command line behind the program's name, quoted as other programs take them.
std::vector<std::wstring> Words() {
    int count = 0;
    LPWSTR* const words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!words) return {};
    const std::vector<std::wstring> arguments(words + 1, words + count);
    LocalFree(words);
    return arguments;
}

bool IsElevated(HANDLE process) {
    HANDLE token = nullptr;
    if (!OpenProcessToken(process, TOKEN_QUERY, &token)) return false;
    TOKEN_ELEVATION elevation{};
    DWORD size = 0;
    GetTokenInformation(token, TokenElevation, &elevation, sizeof elevation, &size);
    CloseHandle(token);
    return elevation.TokenIsElevated;
}

std::function<void()>* quitHandler = nullptr;  // of the object that lives

}  // namespace

std::vector<std::wstring> Arguments(int, char**) {
    const std::wstring raw = RawArguments();
    const std::size_t first = raw.find_first_not_of(L' ');
    if (first == std::wstring::npos) return {};
    if (raw[first] == L'-') return Words();  // a command
    try {
        return SplitCommandLine(raw);
    } catch (const CommandLineError&) {
        MessageBoxW(nullptr, (L"Die Befehlszeile ist ungültig:\r\n" + raw).c_str(), L"Fehler", MB_ICONERROR);
        std::exit(2);
    }
}

void PrintOut(const std::wstring& text) { Write(STD_OUTPUT_HANDLE, text, MB_ICONINFORMATION); }
void PrintError(const std::wstring& text) { Write(STD_ERROR_HANDLE, text, MB_ICONERROR); }

std::string ReadInput(std::size_t most) {
    std::string input;
    char buffer[4096];
    DWORD count = 0;
    const HANDLE stream = GetStdHandle(STD_INPUT_HANDLE);
    while (input.size() <= most && ReadFile(stream, buffer, sizeof buffer, &count, nullptr) && count > 0)
        input.append(buffer, count);
    // The command prompt speaks UTF-8 or the code page of consoles, which is another one than that of files.
    const int size = static_cast<int>(input.size());
    if (MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, input.data(), size, nullptr, 0) > 0) return input;
    std::wstring text(input.size(), L'\0');
    text.resize(
        static_cast<std::size_t>(MultiByteToWideChar(CP_OEMCP, 0, input.data(), size, text.data(), size)));
    return ToUtf8(text);
}

std::function<bool()> StartResident() {
    std::wstring line = L"\"" + ProgramPath() + L"\"";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &started))
        return {};
    CloseHandle(started.hThread);
    // Windows takes the handle back with this process, which ends soon.
    return [process = started.hProcess] { return WaitForSingleObject(process, 0) == WAIT_OBJECT_0; };
}

// Windows chooses the language and the manifest says how resolutions are treated; wxWidgets only has to know
// the module.
void PrepareEnvironment() { wxSetInstance(GetModuleHandleW(nullptr)); }
void StyleWindows() {}
void SettleDown() {}

// Windows tells every window of the program; the first one is enough.
EndRequests::EndRequests(std::function<void()> quit) : quit_(std::move(quit)) {
    quitHandler = &quit_;
    static const bool bound = [] {
        // Left to itself wxWidgets would close windows while the user can still decide to stay.
        wxTheApp->Bind(wxEVT_QUERY_END_SESSION, [](wxCloseEvent&) {});
        wxTheApp->Bind(wxEVT_END_SESSION, [](wxCloseEvent&) {
            if (quitHandler) (*quitHandler)();
        });
        return true;
    }();
    static_cast<void>(bound);
}

EndRequests::~EndRequests() { quitHandler = nullptr; }

// Without an administrator's rights Windows keeps for each user what the program writes for all of them.
// Where the desktop has those rights, too, the user never starts it without.
bool SeesNotesOfAllUsers() {
    DWORD id = 0;
    GetWindowThreadProcessId(GetShellWindow(), &id);
    const HANDLE shell = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id);
    if (!shell) return false;
    const bool more = IsElevated(GetCurrentProcess()) && !IsElevated(shell);
    CloseHandle(shell);
    return more;
}

// Windows ends the session first, and says so.
void WhenDisplayDies(std::function<void()>) {}

void NeverFocus(wxTopLevelWindow& window) {
    const HWND handle = window.GetHandle();
    SetWindowLongPtrW(handle, GWL_EXSTYLE, GetWindowLongPtrW(handle, GWL_EXSTYLE) | WS_EX_NOACTIVATE);
}

std::wstring UsedLibraries() { return L"die Bibliothek wxWidgets"; }
