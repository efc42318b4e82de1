#pragma once
// Watches which windows of the size of notes come to the screen and go from it, and when.

#include <X11/Xlib.h>

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <set>

class NoteWatch {
  public:
    using Clock = std::chrono::steady_clock;
    using Time = Clock::time_point;

    NoteWatch();
    ~NoteWatch();
    NoteWatch(const NoteWatch&) = delete;
    NoteWatch& operator=(const NoteWatch&) = delete;

    // Waits until so many notes are on the screen; throws when it takes a minute.
    void WaitForNotes(std::size_t count);
    // When the last of them came or went.
    Time LastChange() const { return lastChange_; }
    // When the first one came, and when the last other window went before it: the splash.
    Time FirstNote() const { return firstNote_.value_or(Time()); }
    Time SplashGone() const { return splashGone_; }
    Time SplashCame() const { return splashCame_; }

    // Takes up events until the number that `cpu` gives, in milliseconds, has hardly changed for 300 ms;
    // since when.
    Time WaitUntilQuiet(const std::function<double()>& cpu);

  private:
    void TakeEvents(std::chrono::milliseconds atMost);
    void Take(const XEvent& event);
    bool IsNote(Window window) const;

    struct Size {
        int width = 0, height = 0;
    };
    Display* const display_;
    std::map<Window, Size> sizes_;
    std::set<Window> notes_;  // on the screen
    std::optional<Time> firstNote_;
    Time lastChange_, splashCame_, splashGone_;
};

// Opens the menu of the note at the upper left and closes it again, by mouse and keyboard. cpu: as above, of
// the program.
void OpenAndCloseMenu(NoteWatch& watch, const std::function<double()>& cpu);
