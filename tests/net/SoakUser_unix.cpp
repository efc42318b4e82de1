#include <X11/Xlib.h>
#include <poll.h>

#include <cstdio>
#include <stdexcept>

#include "tests/net/SoakUser.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

// A menu is no tool tip.
constexpr int kLeastHeight = 100;

// Windows that come to the screen and go from it.
class MenuWatch {
  public:
    MenuWatch() : display_(XOpenDisplay(nullptr)) {
        if (!display_) throw std::runtime_error("no display");
        XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });  // about windows that have gone already
        XSelectInput(display_, DefaultRootWindow(display_), SubstructureNotifyMask);
        XSync(display_, False);
    }
    ~MenuWatch() { XCloseDisplay(display_); }
    MenuWatch(const MenuWatch&) = delete;
    MenuWatch& operator=(const MenuWatch&) = delete;

    // Waits until a menu has come to the screen, or gone from it. False after ten seconds.
    bool WaitForMenu(bool there) {
        for (const auto end = Clock::now() + 10s; Clock::now() < end;) {
            while (XPending(display_)) {
                XEvent event;
                XNextEvent(display_, &event);
                if (there && event.type == MapNotify && event.xmap.override_redirect &&
                    IsHigh(event.xmap.window)) {
                    menu_ = event.xmap.window;
                    return true;
                }
                if (!there && event.type == UnmapNotify && event.xunmap.window == menu_) return true;
            }
            pollfd events{ConnectionNumber(display_), POLLIN, 0};
            poll(&events, 1, 100);
        }
        return false;
    }

  private:
    bool IsHigh(Window window) {
        XWindowAttributes attributes;
        return XGetWindowAttributes(display_, window, &attributes) && attributes.height >= kLeastHeight;
    }

    Display* const display_;
    Window menu_ = None;
};

}  // namespace

SoakUser::SoakUser(int x, int y, std::chrono::milliseconds pause)
    : thread_([=, this] { Work(x, y, pause); }) {}

void SoakUser::Stop() {
    stop_ = true;
    if (thread_.joinable()) thread_.join();
}

void SoakUser::Work(int x, int y, std::chrono::milliseconds pause) {
    MenuWatch screen;
    // One process for all clicks: to start one takes as long as a menu.
    FILE* const hands = popen("xdotool -", "w");
    const auto act = [&](const char* what) {
        std::fprintf(hands, "%s\n", what);
        std::fflush(hands);
    };
    std::fprintf(hands, "mousemove %d %d\n", x, y);
    while (!stop_) {
        std::this_thread::sleep_for(pause);
        const auto begin = Clock::now();
        act("click 3");
        const bool opened = screen.WaitForMenu(true);
        const auto time = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin);
        if (measures_) times.push_back(time);
        if (!opened) continue;
        std::this_thread::sleep_for(100ms);
        act("key Escape");
        screen.WaitForMenu(false);
    }
    pclose(hands);
}
