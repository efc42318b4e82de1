#pragma once
// Whether a host, most often a panel of the desktop, shows icons that are announced on the session bus. Hosts
// and icons are announced to a watcher, another program on the bus. Watcher, hosts and the bus itself may
// come and go at any time. Nothing here waits for an answer; everything calls back on the thread of the
// windows.

#include <gio/gio.h>

#include <functional>

inline constexpr char kWatcherName[] = "org.kde.StatusNotifierWatcher";
inline constexpr char kWatcherPath[] = "/StatusNotifierWatcher";

class StatusNotifierWatcher {
  public:
    enum class Host { Unknown, Absent, Exists };

    // changed: called after each change of State. Lives until the process ends.
    explicit StatusNotifierWatcher(std::function<void()> changed);
    StatusNotifierWatcher(const StatusNotifierWatcher&) = delete;
    StatusNotifierWatcher& operator=(const StatusNotifierWatcher&) = delete;

    // Unknown only while a caller of Connect holds icons back.
    Host State() const { return state_; }

    // Looks for the session bus, unless it has been found or is being looked for. holdBack: State is Unknown
    // until the bus has answered, for one second at most.
    void Connect(bool holdBack);

  private:
    void OnConnected(GDBusConnection* connection);
    void OnClosed();
    void OnWatcherAppeared(const char* owner);
    void OnWatcherVanished();
    void AskForHost();
    void ForgetWatcher();
    void SetState(Host state);

    const std::function<void()> changed_;
    Host state_ = Host::Absent;
    bool connecting_ = false;
    GDBusConnection* connection_ = nullptr;
    guint nameWatch_ = 0;
    guint patience_ = 0;
    guint subscriptions_[3] = {};
    GCancellable* question_ = nullptr;
};
