#pragma once
// Waiting without threads: the program handles events until something that it waits for has happened. While
// there are no events it sleeps, so waiting costs no CPU. Waits nest: a function called by an event may wait,
// too, and the outer wait cannot return before the inner one has.
//
// All calls belong to the thread of the user interface; none may come from another one. Callbacks of GTK and
// of Windows run in that thread.

#include <chrono>
#include <functional>

// Why a wait returned: its condition holds, its time is up, or the program quits.
enum class WaitEnd { Met, TimedOut, Quitting };

constexpr std::chrono::milliseconds kNoLimit{-1};

// Handles events until condition() holds, the limit has passed (on a clock that nobody sets) or the program
// quits. The condition is called first, then at every WakeWaits(), and whenever an inner wait has ended; so
// it has to be cheap, and whoever makes it true has to call WakeWaits().
WaitEnd WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = kNoLimit);

// To be called after any change that a wait may be waiting for. Cheap when nobody waits.
void WakeWaits();

// The program is to end: every WaitUntil, those that run and those to come, returns Quitting.
void EndAllWaits();

// True once EndAllWaits has been called. All has been saved by then, so whoever comes back from a wait and
// finds this true changes nothing more and returns.
bool IsQuitting();

// For waits in a loop that GTK or Windows runs, such as that of a menu or a file dialog: as long as the
// object lives, EndAllWaits calls its function, which makes that loop end.
class EndedWithWaits {
  public:
    explicit EndedWithWaits(std::function<void()> end);
    ~EndedWithWaits();
    EndedWithWaits(const EndedWithWaits&) = delete;
    EndedWithWaits& operator=(const EndedWithWaits&) = delete;

  private:
    std::function<void()> end_;
};

// Takes EndAllWaits back, for tests that quit more than once in one process.
void ResetWaits();
