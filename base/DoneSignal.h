#pragma once
// Tells the thread that waits for it that another one has done its work, once.
//
// Not by a condition variable everywhere: with those of MinGW's threads the working thread was seen to wait
// for their lock as long as the other one waited for it.

#include <chrono>
#include <memory>

class DoneSignal {
  public:
    DoneSignal();
    ~DoneSignal();
    DoneSignal(const DoneSignal&) = delete;
    DoneSignal& operator=(const DoneSignal&) = delete;

    // Whatever was written before it is seen by who has waited for it.
    void Give();
    // Sleeps until it is given, or so long; whether it has been given.
    bool WaitFor(std::chrono::milliseconds most);

  private:
    struct Native;
    const std::unique_ptr<Native> native_;
};
