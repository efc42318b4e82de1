#pragma once
// What wxWidgets knows of the program. What goes wrong unexpectedly is told on the error output, and the
// program carries on.

#include <wx/app.h>

#include <functional>

class KivoraApp : public wxApp {
  public:
    // run: what the program does, from the start of wxWidgets to the end of the process. Its result is the
    // process's exit code.
    explicit KivoraApp(std::function<int()> run) : run_(std::move(run)) {}

    bool OnInit() override;
    int OnRun() override;
    bool OnExceptionInMainLoop() override;
    // The interface is German; every window would look the direction up anew.
    wxLayoutDirection GetLayoutDirection() const override { return wxLayout_LeftToRight; }
    void OnAssertFailure(const wxChar* file, int line, const wxChar* function, const wxChar* condition,
                         const wxChar* message) override;

  private:
    std::function<int()> run_;
};

// Tells of the exception being handled.
void ReportException() noexcept;

// For calls that come out of C code, which no exception may pass.
template <class Call>
void Guarded(Call&& call) noexcept {
    try {
        call();
    } catch (...) {
        ReportException();
    }
}
