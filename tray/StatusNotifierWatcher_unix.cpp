#include "tray/StatusNotifierWatcher_unix.h"

#include <utility>

#include "tray/SessionBus_unix.h"

namespace {

// How long icons are held back at the start for a bus that does not answer.
constexpr guint kPatienceMilliseconds = 1000;
constexpr char kHostProperty[] = "IsStatusNotifierHostRegistered";

}  // namespace

StatusNotifierWatcher::StatusNotifierWatcher(std::function<void()> changed) : changed_(std::move(changed)) {}

void StatusNotifierWatcher::Connect(bool holdBack) {
    if (connection_ || connecting_ || SessionBusAddress().empty()) return;
    connecting_ = true;
    if (holdBack) {
        const auto noLonger = [](void* self) -> gboolean {
            auto& watcher = *static_cast<StatusNotifierWatcher*>(self);
            watcher.patience_ = 0;
            watcher.SetState(Host::Absent);
            return G_SOURCE_REMOVE;
        };
        SetState(Host::Unknown);
        patience_ = g_timeout_add(kPatienceMilliseconds, noLonger, this);
    }
    ConnectToSessionBus(nullptr, [this](GDBusConnection* connection) { OnConnected(connection); });
}

void StatusNotifierWatcher::OnConnected(GDBusConnection* connection) {
    connecting_ = false;
    connection_ = connection;
    if (!connection_) return SetState(Host::Absent);
    g_signal_connect(connection_, "closed",
                     G_CALLBACK(+[](GDBusConnection*, gboolean, GError*, StatusNotifierWatcher* watcher) {
                         watcher->OnClosed();
                     }),
                     this);
    nameWatch_ = g_bus_watch_name_on_connection(
        connection_, kWatcherName, G_BUS_NAME_WATCHER_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char* owner, void* self) {
            static_cast<StatusNotifierWatcher*>(self)->OnWatcherAppeared(owner);
        },
        [](GDBusConnection*, const char*, void* self) {
            static_cast<StatusNotifierWatcher*>(self)->OnWatcherVanished();
        },
        this, nullptr);
}

void StatusNotifierWatcher::OnClosed() {
    g_bus_unwatch_name(std::exchange(nameWatch_, 0));
    ForgetWatcher();
    g_signal_handlers_disconnect_by_data(connection_, this);
    Disconnect(connection_);
    SetState(Host::Absent);
}

void StatusNotifierWatcher::OnWatcherAppeared(const char* owner) {
    ForgetWatcher();
    // Each signal by itself, because the watcher also sends one for every icon of every program.
    const struct {
        const char *interface, *member, *argument;
    } signals[] = {
        {kWatcherName, "StatusNotifierHostRegistered", nullptr},
        {kWatcherName, "StatusNotifierHostUnregistered", nullptr},
        {"org.freedesktop.DBus.Properties", "PropertiesChanged", kWatcherName},
    };
    const auto look = [](GDBusConnection*, const char*, const char*, const char*, const char* signal,
                         GVariant* parameters, void* self) {
        if (g_str_equal(signal, "PropertiesChanged")) {
            g_autofree char* changes = g_variant_print(parameters, FALSE);
            if (!g_strrstr(changes, kHostProperty)) return;
        }
        static_cast<StatusNotifierWatcher*>(self)->AskForHost();
    };
    for (std::size_t i = 0; i < std::size(signals); ++i) {
        subscriptions_[i] = g_dbus_connection_signal_subscribe(
            connection_, owner, signals[i].interface, signals[i].member, kWatcherPath, signals[i].argument,
            G_DBUS_SIGNAL_FLAGS_NONE, look, this, nullptr);
    }
    AskForHost();
}

void StatusNotifierWatcher::OnWatcherVanished() {
    ForgetWatcher();
    SetState(Host::Absent);
}

// The signals do not tell whether a host exists: when one has gone, another one may be left.
void StatusNotifierWatcher::AskForHost() {
    if (question_) {
        g_cancellable_cancel(question_);
        g_object_unref(question_);
    }
    question_ = g_cancellable_new();
    CallOnBus(connection_, {kWatcherName, kWatcherPath, "org.freedesktop.DBus.Properties", "Get", "(v)"},
              g_variant_new("(ss)", kWatcherName, kHostProperty), question_, [this](GVariant* answer) {
                  bool exists = false;
                  if (answer) {
                      g_autoptr(GVariant) value = nullptr;
                      g_variant_get(answer, "(v)", &value);
                      exists =
                          g_variant_is_of_type(value, G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value);
                  }
                  SetState(exists ? Host::Exists : Host::Absent);
              });
}

void StatusNotifierWatcher::ForgetWatcher() {
    for (guint& subscription : subscriptions_)
        if (subscription) g_dbus_connection_signal_unsubscribe(connection_, std::exchange(subscription, 0));
    if (!question_) return;
    g_cancellable_cancel(question_);
    g_clear_object(&question_);
}

void StatusNotifierWatcher::SetState(Host state) {
    if (patience_) g_source_remove(std::exchange(patience_, 0));
    if (std::exchange(state_, state) != state) changed_();
}
