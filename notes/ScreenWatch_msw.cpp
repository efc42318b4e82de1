// Windows tells every top-level window, also one that is never shown.
#include <wx/app.h>
#include <wx/frame.h>
#include <wx/weakref.h>

#include "notes/ScreenWatch.h"

struct ScreenWatch::Source {
    wxWeakRef<wxFrame> window;  // destroyed by wxWidgets at the program's end, if not before

    explicit Source(std::function<void()> changed)
        : window(new wxFrame(nullptr, wxID_ANY, L"Kivora", wxDefaultPosition, wxDefaultSize,
                             wxFRAME_NO_TASKBAR)) {
        wxFrame* const frame = window;
        auto pending = std::make_shared<bool>(false);
        frame->Bind(wxEVT_DISPLAY_CHANGED, [=](wxDisplayChangedEvent& event) {
            event.Skip();
            // The list of screens that wxWidgets keeps has to be renewed first.
            if (!std::exchange(*pending, true)) {
                frame->CallAfter([=] {
                    *pending = false;
                    changed();
                });
            }
        });
    }
    ~Source() {
        if (window) delete window.get();
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;
};

ScreenWatch::ScreenWatch(std::function<void()> changed)
    : source_(std::make_unique<Source>(std::move(changed))) {}
ScreenWatch::~ScreenWatch() = default;
