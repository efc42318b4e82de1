#include <windows.h>

#include <stdexcept>

#include "base/Text.h"
#include "registry/clsRegistry.h"
#include "tests/app/Process.h"
#include "tests/support/Files.h"

namespace {

namespace fs = std::filesystem;

const wchar_t* const kNotes = L"HKLM\\Software\\Kivora";

constexpr LONG kSplashWidth = 300;  // at least

// The program of the tests writes where the user's own would, so these run only where no user is: under Wine,
// in an installation of the tests' own.
bool IsOwnInstallation() {
    return GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
}

struct Place {
    Place() {
        if (!IsOwnInstallation())
            throw std::runtime_error("these tests would overwrite the notes of this computer");
        fs::create_directories(folder);
    }
    ~Place() {
        Registry().DeleteKey(kNotes);
        std::error_code ignored;
        fs::remove_all(folder, ignored);
    }
    const fs::path folder =
        fs::temp_directory_path() / (L"kivora-test-" + std::to_wstring(GetCurrentProcessId()));
};

std::wstring ProgramFile() { return fs::absolute(FromUtf8(KIVORA_PROGRAM)).native(); }

HANDLE Written(const fs::path& file) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                       CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

bool IsOfTheProgram(HWND window) {
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    const HANDLE process = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id);
    if (!process) return false;
    wchar_t name[MAX_PATH] = L"";
    DWORD length = MAX_PATH;
    QueryFullProcessImageNameW(process, 0, name, &length);
    CloseHandle(process);
    return fs::path(name).filename() == fs::path(ProgramFile()).filename();
}

std::wstring ClassOf(HWND window) {
    wchar_t name[64] = L"";
    GetClassNameW(window, name, 64);
    return name;
}

std::wstring TitleOf(HWND window) {
    wchar_t title[256] = L"";
    GetWindowTextW(window, title, 256);
    return title;
}

BOOL CALLBACK AddWhenOfTheProgram(HWND window, LPARAM found) {
    const bool shown = IsWindowVisible(window) || ClassOf(window) == L"Kivora.Notification";
    if (shown && IsOfTheProgram(window)) reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
    return TRUE;
}

std::vector<HWND> ProgramWindows() {
    std::vector<HWND> windows;
    EnumWindows(AddWhenOfTheProgram, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

// Windows asks every window, and then tells it.
BOOL CALLBACK EndSession(HWND window, LPARAM process) {
    DWORD id = 0;
    GetWindowThreadProcessId(window, &id);
    DWORD_PTR answer = 0;
    if (id != static_cast<DWORD>(process) || ClassOf(window).starts_with(L"Kivora.")) return TRUE;
    if (SendMessageTimeoutW(window, WM_QUERYENDSESSION, 0, 0, SMTO_NORMAL, 2000, &answer) && answer)
        SendMessageTimeoutW(window, WM_ENDSESSION, TRUE, 0, SMTO_NORMAL, 2000, &answer);
    return TRUE;
}

std::string IdOf(HWND window) { return std::to_string(reinterpret_cast<std::uintptr_t>(window)); }
HWND WindowOf(const std::string& id) { return reinterpret_cast<HWND>(std::stoull(id)); }

}  // namespace

const fs::path& TestFolder() {
    static const Place place;
    return place.folder;
}

struct Process::Parts {
    PROCESS_INFORMATION process{};
    bool killed = false;
    fs::path output, errors;

    // Calls a function of Windows that is in no header.
    void Call(const char* name) const {
        using Function = LONG(WINAPI*)(HANDLE);
        const auto function = reinterpret_cast<Function>(
            reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), name)));
        function(process.hProcess);
    }
};

namespace {

std::wstring Line(const std::vector<std::string>& arguments) {
    std::wstring line = L"\"" + ProgramFile() + L"\"";
    for (const std::string& argument : arguments)
        line += L" /" + FromUtf8(argument);  // introduced by a slash
    return line;
}

}  // namespace

Process::Process(std::vector<std::string> arguments, bool) : Process(ProgramFile(), Line(arguments)) {}

Process::Process(const std::wstring& program, std::wstring line, void* token, void* output)
    : parts_(std::make_unique<Parts>()) {
    static int number = 0;
    parts_->output = TestFolder() / ("output-" + std::to_string(++number));
    parts_->errors = TestFolder() / ("errors-" + std::to_string(number));
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    const HANDLE written = Written(parts_->output);
    start.hStdOutput = output ? output : written;
    start.hStdError = Written(parts_->errors);
    if (!CreateProcessAsUserW(token, program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                              nullptr, &start, &parts_->process))
        throw std::runtime_error("the program does not start");
    CloseHandle(written);
    CloseHandle(start.hStdError);
}

std::unique_ptr<Process> Process::Doing(const std::vector<std::string>& words) {
    std::wstring line;
    for (const std::string& word : words) {
        line += L" \"";
        for (const wchar_t character : FromUtf8(word))
            line.append(character == L'"' ? L"\\" : L"").append(1, character);
        line += L'"';
    }
    line.erase(1, 1).erase(line.find(L'"'), 1);  // the command itself stands without
    return std::make_unique<Process>(ProgramFile(), Line({}) + line);
}

Process::~Process() {
    if (!Ended()) {
        Kill();
        WaitForSingleObject(parts_->process.hProcess, INFINITE);
    }
    CloseHandle(parts_->process.hThread);
    CloseHandle(parts_->process.hProcess);
}

void Process::AskToEnd() const { EnumWindows(EndSession, static_cast<LPARAM>(parts_->process.dwProcessId)); }

void Process::Kill() const {
    parts_->killed = true;
    TerminateProcess(parts_->process.hProcess, 9);
}
void Process::Stop() const { parts_->Call("NtSuspendProcess"); }
void Process::Continue() const { parts_->Call("NtResumeProcess"); }

bool Process::Ended() { return WaitForSingleObject(parts_->process.hProcess, 0) == WAIT_OBJECT_0; }

std::optional<int> Process::Wait(std::chrono::milliseconds limit) {
    if (WaitForSingleObject(parts_->process.hProcess, static_cast<DWORD>(limit.count())) != WAIT_OBJECT_0)
        return std::nullopt;
    DWORD code = 0;
    GetExitCodeProcess(parts_->process.hProcess, &code);
    return parts_->killed ? -1 : static_cast<int>(code);
}

std::string Process::Output() const { return Content(parts_->output); }
std::string Process::Errors() const { return Content(parts_->errors); }

std::vector<std::string> Windows() {
    std::vector<std::string> ids;
    for (const HWND window : ProgramWindows()) ids.push_back(IdOf(window));
    return ids;
}

bool IsSplash(const std::string& id) {
    RECT place{};
    if (!GetWindowRect(WindowOf(id), &place)) return true;
    // Notes have the same title, but those of tests are smaller.
    return TitleOf(WindowOf(id)) == L"Kivora" && place.right - place.left >= kSplashWidth;
}

std::string WindowTitled(const std::string& title) {
    for (const HWND window : ProgramWindows())
        if (TitleOf(window) == FromUtf8(title)) return IdOf(window);
    return {};
}

void Press(const std::string& window, const std::string& key) {
    SetForegroundWindow(WindowOf(window));
    Eventually([&] { return GetForegroundWindow() == WindowOf(window); }, std::chrono::seconds(1));
    INPUT press[2]{};
    for (INPUT& input : press) {
        input.type = INPUT_KEYBOARD;
        input.ki.wVk = key == "Return" ? VK_RETURN : VK_ESCAPE;
    }
    press[1].ki.dwFlags = KEYEVENTF_KEYUP;
    SendInput(2, press, sizeof(INPUT));
}
