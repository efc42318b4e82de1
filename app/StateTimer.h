#pragma once
// Has the states of the hive kept: some seconds after something was written, and at the end. While nothing is
// written it sleeps.

#include <wx/timer.h>

class StateTimer : private wxTimer {
  public:
    StateTimer();
    ~StateTimer() override;

  private:
    void Notify() override;
};
