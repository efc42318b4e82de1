#pragma once
// Shows how far a print job is and lets the user stop it. Whoever prints sets the value and asks for the
// wish.

#include <chrono>

#include "dialogs/frmDialog.h"

class frmPrintProgress : public frmDialog {
  public:
    frmPrintProgress();

    // 0 to 100; other numbers are brought into that range. Setting it draws the bar at once, and lets waiting
    // events run the first time, for 100, and when the last time is 80 milliseconds ago.
    int Value() const { return value_; }
    void Value(int percent);

    // The user wants the printing to stop.
    bool Cancelled() const { return State() == DialogState::Cancel; }

    wxWindow* picProgress = nullptr;
    using frmDialog::cmdAbbrechen;

  private:
    void PaintBar();

    int value_ = 0;
    std::chrono::steady_clock::time_point eventsRan_{};
};
