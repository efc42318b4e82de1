#pragma once
// Running the events of wxWidgets in tests.

#include <wx/app.h>
#include <wx/timer.h>

#include <chrono>
#include <functional>

#include "dialogs/Wait.h"

// Lets events run for a while.
inline void RunEvents(std::chrono::milliseconds span = std::chrono::milliseconds(50)) {
    WaitUntil([] { return false; }, span);
}

// Lets the events of now run, with all that they put off until after them.
inline void RunPosted() {
    bool done = false;
    wxTheApp->CallAfter([&done] {
        done = true;
        WakeWaits();
    });
    WaitUntil([&done] { return done; });
}

// Lets events run until something holds; false when it does not within the limit, which only what will never
// hold is to reach, on a machine with much else to do too.
inline bool RunUntil(const std::function<bool()>& condition,
                     std::chrono::milliseconds limit = std::chrono::seconds(30)) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        RunEvents(std::chrono::milliseconds(10));
    }
    return true;
}

// Calls a function again and again, at once after the events of each span, until it says that it is done.
// Goes on in loops that are the platform's own, those of menus and file dialogs.
class Repeated : public wxTimer {
  public:
    static Repeated* Every(std::chrono::milliseconds span, std::function<bool()> done) {
        auto* repeated = new Repeated(std::move(done));
        repeated->Start(static_cast<int>(span.count()));
        return repeated;
    }
    // Not called any more.
    void End() {
        Stop();
        wxTheApp->ScheduleForDestruction(this);
    }

  private:
    explicit Repeated(std::function<bool()> done) : done_(std::move(done)) {}
    void Notify() override {
        if (busy_) return;
        busy_ = true;
        const bool done = done_();
        busy_ = false;
        if (done) End();
    }

    std::function<bool()> done_;
    bool busy_ = false;  // what it does may run events
};

// Does something once, later.
inline void After(std::chrono::milliseconds span, std::function<void()> act) {
    Repeated::Every(span, [act = std::move(act)] {
        act();
        return true;
    });
}
