#include "app/KivoraApp.h"

#include <wx/log.h>

#include <cstdio>
#include <exception>

bool KivoraApp::OnInit() {
    // The hidden main window and notes come and go; only "Beenden" ends the program.
    SetExitOnFrameDelete(false);
    // wxWidgets' messages would open boxes of their own.
    delete wxLog::SetActiveTarget(new wxLogStderr);
    return true;
}

int KivoraApp::OnRun() {
    try {
        return run_();
    } catch (...) {
        ReportException();
        return 1;
    }
}

bool KivoraApp::OnExceptionInMainLoop() {
    ReportException();
    return true;
}

void KivoraApp::OnAssertFailure(const wxChar* file, int line, const wxChar*, const wxChar* condition,
                                const wxChar* message) {
    std::fprintf(stderr, "kivora: %s:%d: %s %s\n", wxString(file).utf8_str().data(), line,
                 wxString(condition).utf8_str().data(), message ? wxString(message).utf8_str().data() : "");
}

void ReportException() noexcept {
    try {
        throw;
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "kivora: %s\n", exception.what());
    } catch (...) {
        std::fputs("kivora: unknown exception\n", stderr);
    }
}
