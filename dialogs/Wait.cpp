#include "dialogs/Wait.h"

#include <wx/evtloop.h>
#include <wx/timer.h>

#include <vector>

namespace {

struct Wait {
    wxGUIEventLoop* loop;
    const std::function<bool()>* condition;
};

std::vector<Wait> waits;                           // innermost last
std::vector<std::function<void()>*> foreignLoops;  // what ends them
bool quitting = false;

// Ends its loop when the limit has passed. The wait then sees for itself why its loop has ended.
class LimitTimer : public wxTimer {
  public:
    explicit LimitTimer(wxGUIEventLoop& loop) : loop_(loop) {}
    void Notify() override { loop_.ScheduleExit(); }

  private:
    wxGUIEventLoop& loop_;
};

}  // namespace

WaitEnd WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    using Clock = std::chrono::steady_clock;
    const bool limited = limit >= std::chrono::milliseconds::zero();
    const Clock::time_point deadline = Clock::now() + (limited ? limit : std::chrono::milliseconds::zero());
    for (;;) {
        if (quitting) return WaitEnd::Quitting;
        if (condition()) return WaitEnd::Met;
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
        if (limited && left.count() <= 0) return WaitEnd::TimedOut;

        wxGUIEventLoop loop;
        LimitTimer timer(loop);
        if (limited) timer.StartOnce(static_cast<int>(left.count()));
        waits.push_back({&loop, &condition});
        loop.Run();
        waits.pop_back();
        // What the wait around this one waits for may have come to hold meanwhile.
        WakeWaits();
    }
}

void WakeWaits() {
    // Outer loops look for themselves once the loops inside them have ended.
    if (!waits.empty() && (*waits.back().condition)()) waits.back().loop->ScheduleExit();
}

void EndAllWaits() {
    quitting = true;
    for (const Wait& wait : waits) wait.loop->ScheduleExit();
    for (const auto* end : foreignLoops) (*end)();
}

EndedWithWaits::EndedWithWaits(std::function<void()> end) : end_(std::move(end)) {
    foreignLoops.push_back(&end_);
}
EndedWithWaits::~EndedWithWaits() { std::erase(foreignLoops, &end_); }

bool IsQuitting() { return quitting; }

void ResetWaits() { quitting = false; }
