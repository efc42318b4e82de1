#pragma once
// Waiting without threads: the program runs events until something it waits for has happened. The loop sleeps
// while nothing happens, so waiting costs no CPU. Loops nest: an inner one has to end before an outer one
// goes on.

#include <chrono>
#include <functional>

enum class WaitEnd { Met, TimedOut, Quitting };

constexpr std::chrono::milliseconds kNoLimit{-1};

// Runs events until condition() holds, the limit has passed on a monotonic clock or the program quits. The
// condition is looked at first, after every WakeWaits(), and whenever an inner wait has ended.
WaitEnd WaitUntil(const std::function<bool()>& condition, std::chrono::milliseconds limit = kNoLimit);

// To be called by whoever changed something that a waiting loop may look at. Cheap when nobody waits.
void WakeWaits();

// The program is to end: every running and every later WaitUntil returns Quitting.
void EndAllWaits();

// True once EndAllWaits has been called. Whoever comes back from a wait while this holds touches nothing
// more.
bool IsQuitting();

// While it lives, EndAllWaits calls its function too: for waits in loops that are the platform's own, such as
// those of menus and file dialogs.
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
