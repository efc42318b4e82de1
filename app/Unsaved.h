#pragma once
// Work of the user that is not on the disk. It hears of every save, tells the user once that one failed, and
// repeats it until it succeeds. While all is well no timer runs.

#include <wx/timer.h>

#include <chrono>
#include <functional>
#include <string>

#include "registry/KeepResult.h"

class Unsaved {
  public:
    // repeat: saves again; its result comes by Heard.
    explicit Unsaved(std::function<void()> repeat) : repeat_(std::move(repeat)) {
        timer_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Repeat(); });
    }

    // The result of a save.
    void Heard(const KeepResult& result);

    // There is something to be tried again, although nothing is unsaved; a save that succeeds ends that.
    void TryAgainLater();

    // The user knows already, or is just being asked, so there is no message while this lives.
    class Quiet {
      public:
        explicit Quiet(Unsaved& unsaved) : unsaved_(unsaved), before_(unsaved.told_) { unsaved.told_ = true; }
        ~Quiet() { unsaved_.told_ = before_ || unsaved_.Any(); }
        Quiet(const Quiet&) = delete;
        Quiet& operator=(const Quiet&) = delete;

      private:
        Unsaved& unsaved_;
        const bool before_;
    };

    bool Any() const { return !result_.Kept(); }
    // Why the last save failed.
    const KeepResult& Why() const { return result_; }

  private:
    void Repeat();
    void Tell();

    std::function<void()> repeat_;
    wxTimer timer_;
    std::chrono::milliseconds pause_{};
    KeepResult result_;
    bool told_ = false;  // of the failure that lasts
};
