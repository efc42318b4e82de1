#pragma once
// The user of the soak: opens the menu of a note with the right mouse button and closes it again, as often as
// told, and takes the time until it stands on the screen.

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

class SoakUser {
  public:
    // A note is to lie in front of everything else at that place of the screen.
    SoakUser(int x, int y, std::chrono::milliseconds pause);
    ~SoakUser() { Stop(); }
    // From now on times are kept.
    void Measure() { measures_ = true; }
    void Stop();

    // After Stop. Menus that did not come within ten seconds count as such.
    std::vector<std::chrono::microseconds> times;

  private:
    void Work(int x, int y, std::chrono::milliseconds pause);

    std::atomic<bool> stop_ = false, measures_ = false;
    std::thread thread_;
};
