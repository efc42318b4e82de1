#pragma once
// Whether a part of the desktop shows icons that are announced on the session bus. Such hosts meet at a
// watcher on the bus, and icons are announced to it. Watcher, hosts and the bus itself may come and go at any
// time. Everything happens between other events; nothing waits for an answer.

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
    // until the bus has answered, or has taken too long to.
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
