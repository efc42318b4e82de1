// Windows tells every top-level window, also one that is never shown.
#include <windows.h>

#include <wx/app.h>
#include <wx/frame.h>
#include <wx/weakref.h>

#include "notes/ScreenWatch.h"

namespace {

class HearingFrame : public wxFrame {
  public:
    explicit HearingFrame(std::function<void()> changed)
        : wxFrame(nullptr, wxID_ANY, L"Kivora", wxDefaultPosition, wxDefaultSize, wxFRAME_NO_TASKBAR),
          changed_(std::move(changed)) {
        Bind(wxEVT_DISPLAY_CHANGED, [this](wxDisplayChangedEvent& event) {
            event.Skip();
            TellLater();
        });
    }

    // The task bar and its like have changed what they leave free, which no event of wxWidgets tells.
    bool HandleSettingChange(WXWPARAM what, WXLPARAM section) override {
        if (what == SPI_SETWORKAREA) TellLater();
        return wxFrame::HandleSettingChange(what, section);
    }

  private:
    // The list of screens that wxWidgets keeps has to be renewed first.
    void TellLater() {
        if (std::exchange(pending_, true)) return;
        CallAfter([this] {
            pending_ = false;
            changed_();
        });
    }

    std::function<void()> changed_;
    bool pending_ = false;
};

}  // namespace

struct ScreenWatch::Source {
    wxWeakRef<wxFrame> window;  // destroyed by wxWidgets at the program's end, if not before

    explicit Source(std::function<void()> changed) : window(new HearingFrame(std::move(changed))) {}
    ~Source() {
        if (window) delete window.get();
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
};

ScreenWatch::ScreenWatch(std::function<void()> changed)
    : source_(std::make_unique<Source>(std::move(changed))) {}
ScreenWatch::~ScreenWatch() = default;
