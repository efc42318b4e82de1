#include <windows.h>

#include <wx/app.h>
#include <wx/msw/private.h>
#include <wx/toplevel.h>

#include <cstdlib>

#include "app/CommandLine.h"
#include "app/Platform.h"
#include "base/Text.h"

namespace {

// What follows the program's name in the process's command line.
std::wstring RawArguments() {
    const std::wstring line = GetCommandLineW();
    const bool quoted = line.starts_with(L'"');
    const std::size_t end = line.find(quoted ? L'"' : L' ', quoted ? 1 : 0);
    if (end == std::wstring::npos) return {};
    return line.substr(quoted ? end + 1 : end);
}

void Write(DWORD stream, const std::wstring& text) {
    const std::string bytes = ToUtf8(text);
    DWORD written = 0;
    WriteFile(GetStdHandle(stream), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}

std::function<void()>* quitHandler = nullptr;  // of the object that lives

}  // namespace

std::vector<std::wstring> Arguments(int, char**) {
    const std::wstring raw = RawArguments();
    if (raw.find_first_not_of(L' ') == std::wstring::npos) return {};
    try {
        return SplitCommandLine(raw);
    } catch (const CommandLineError&) {
        MessageBoxW(nullptr, (L"Die Befehlszeile ist ungültig:\r\n" + raw).c_str(), L"Fehler", MB_ICONERROR);
        std::exit(2);
    }
}

void PrintOut(const std::wstring& text) { Write(STD_OUTPUT_HANDLE, text); }
void PrintError(const std::wstring& text) { Write(STD_ERROR_HANDLE, text); }

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

// Windows ends the session first, and says so.
void WhenDisplayDies(std::function<void()>) {}

void NeverFocus(wxTopLevelWindow& window) {
    const HWND handle = window.GetHandle();
    SetWindowLongPtrW(handle, GWL_EXSTYLE, GetWindowLongPtrW(handle, GWL_EXSTYLE) | WS_EX_NOACTIVATE);
}

std::wstring UsedLibraries() { return L"die Bibliothek wxWidgets"; }
