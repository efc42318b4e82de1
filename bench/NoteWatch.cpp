#include "bench/NoteWatch.h"

#include <poll.h>

#include <cstdlib>
#include <stdexcept>

#include "bench/Process.h"
#include "bench/SampleNotes.h"

using namespace std::chrono_literals;

namespace {
constexpr int kTolerance = 4;      // pixels that a window manager may add
constexpr int kSplashWidth = 300;  // at least; menus and icons are narrower
constexpr double kSilence = 2;     // milliseconds of CPU that are nothing
constexpr auto kQuiet = 300ms, kLook = 5ms;
}  // namespace

NoteWatch::NoteWatch() : display_(XOpenDisplay(nullptr)) {
    if (!display_) throw std::runtime_error("no display");
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });  // about windows that have gone already
    XSelectInput(display_, DefaultRootWindow(display_), SubstructureNotifyMask);
    XSync(display_, False);
}

NoteWatch::~NoteWatch() { XCloseDisplay(display_); }

void NoteWatch::WaitForNotes(std::size_t count) {
    const Time end = Clock::now() + 60s;
    while (notes_.size() != count) {
        if (Clock::now() > end)
            throw std::runtime_error(std::to_string(notes_.size()) + " of " + std::to_string(count) +
                                     " notes came to the screen");
        TakeEvents(kLook);
    }
}

NoteWatch::Time NoteWatch::WaitUntilQuiet(const std::function<double()>& cpu) {
    double before = cpu();
    Time since = Clock::now();
    while (Clock::now() - since < kQuiet) {
        TakeEvents(kLook);
        const double now = cpu();
        if (now - before > kSilence) {
            before = now;
            since = Clock::now();
        }
    }
    return since;
}

void NoteWatch::TakeEvents(std::chrono::milliseconds atMost) {
    if (!XPending(display_)) {
        pollfd events{ConnectionNumber(display_), POLLIN, 0};
        poll(&events, 1, static_cast<int>(atMost.count()));
    }
    while (XPending(display_)) {
        XEvent event;
        XNextEvent(display_, &event);
        Take(event);
    }
}

void NoteWatch::Take(const XEvent& event) {
    const Time now = Clock::now();
    const auto gone = [&](Window window) {
        if (notes_.erase(window)) lastChange_ = now;
    };
    switch (event.type) {
        case CreateNotify:
            sizes_[event.xcreatewindow.window] = {event.xcreatewindow.width, event.xcreatewindow.height};
            break;
        case ConfigureNotify:
            sizes_[event.xconfigure.window] = {event.xconfigure.width, event.xconfigure.height};
            break;
        case MapNotify:
            if (IsNote(event.xmap.window)) {
                notes_.insert(event.xmap.window);
                lastChange_ = now;
                if (!firstNote_) firstNote_ = now;
            } else if (!firstNote_ && sizes_[event.xmap.window].width >= kSplashWidth) {
                splashCame_ = now;
            }
            break;
        case UnmapNotify:
            gone(event.xunmap.window);
            if (!firstNote_ && splashCame_ != Time() && sizes_[event.xunmap.window].width >= kSplashWidth)
                splashGone_ = now;
            break;
        case DestroyNotify:
            gone(event.xdestroywindow.window);
            sizes_.erase(event.xdestroywindow.window);
            break;
        default:
            break;
    }
}

bool NoteWatch::IsNote(Window window) const {
    const auto found = sizes_.find(window);
    return found != sizes_.end() && std::abs(found->second.width - kNoteWidth) <= kTolerance &&
           std::abs(found->second.height - kNoteHeight) <= kTolerance;
}

void OpenAndCloseMenu(NoteWatch& watch, const std::function<double()>& cpu) {
    Do({"xdotool", "mousemove", "60", "60", "click", "3"});
    watch.WaitUntilQuiet(cpu);
    Do({"xdotool", "key", "Escape"});
    watch.WaitUntilQuiet(cpu);
}
