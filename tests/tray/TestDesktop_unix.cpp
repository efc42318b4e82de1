#include "tests/tray/TestDesktop_unix.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tests/support/Events.h"

namespace {

constexpr char kWatcher[] = "org.kde.StatusNotifierWatcher";
constexpr char kWatcherObject[] = "/StatusNotifierWatcher";

constexpr char kIntrospection[] = R"(<node><interface name='org.kde.StatusNotifierWatcher'>
    <property name='IsStatusNotifierHostRegistered' type='b' access='read'/>
    <method name='RegisterStatusNotifierItem'><arg type='s' direction='in'/></method>
</interface></node>)";

// A bus that starts no services and reads no configuration of the machine.
constexpr char kBusConfiguration[] =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:path=FOLDER/bus</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
<allow own="*"/></policy></busconfig>)";

}  // namespace

TestBus::TestBus() {
    char name[] = "/tmp/kivora-bus-XXXXXX";
    if (!mkdtemp(name)) return;
    folder_ = name;
    std::string configuration = kBusConfiguration;
    configuration.replace(configuration.find("FOLDER"), 6, folder_);
    std::ofstream(folder_ + "/bus.conf") << configuration;

    const std::string command = "exec dbus-daemon --config-file=" + folder_ +
                                "/bus.conf --nofork --print-address=1 --print-pid=1 2>/dev/null";
    output_ = popen(command.c_str(), "re");
    char address[256];
    if (output_ && std::fscanf(output_, "%255s %d", address, &pid_) == 2) address_ = address;
    if (Started()) setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), 1);
}

TestBus::~TestBus() {
    setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
    if (Started()) kill(pid_, SIGTERM);
    if (output_) pclose(output_);  // waits for its end
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

TestDesktop::TestDesktop(const TestBus& bus, bool host) : host_(host) {
    constexpr auto flags = GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    connection_ =
        g_dbus_connection_new_for_address_sync(bus.Address().c_str(), flags, nullptr, nullptr, nullptr);
    if (!connection_) return;
    static GDBusNodeInfo* const info = g_dbus_node_info_new_for_xml(kIntrospection, nullptr);
    static const GDBusInterfaceVTable table = {
        [](GDBusConnection*, const char*, const char*, const char*, const char* method, GVariant* parameters,
           GDBusMethodInvocation* invocation,
           void* self) { static_cast<TestDesktop*>(self)->OnCall(method, parameters, invocation); },
        nullptr,
        nullptr,
        {}};
    object_ = g_dbus_connection_register_object(connection_, kWatcherObject, info->interfaces[0], &table,
                                                this, nullptr, nullptr);
    subscriptions_.push_back(g_dbus_connection_signal_subscribe(
        connection_, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged", nullptr, nullptr,
        G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
           void* self) {
            const char *name = nullptr, *before = nullptr, *after = nullptr;
            g_variant_get(parameters, "(&s&s&s)", &name, &before, &after);
            if (!*after) std::erase(static_cast<TestDesktop*>(self)->items_, name);
        },
        this, nullptr));
    for (const char* interface : {"org.kde.StatusNotifierItem", "com.canonical.dbusmenu"}) {
        subscriptions_.push_back(g_dbus_connection_signal_subscribe(
            connection_, nullptr, interface, nullptr, nullptr, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
            [](GDBusConnection*, const char*, const char*, const char*, const char* signal, GVariant*,
               void* self) { static_cast<TestDesktop*>(self)->signals_ += std::string(signal) + ' '; },
            this, nullptr));
    }
    Variant(g_dbus_connection_call_sync(
        connection_, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
        g_variant_new("(su)", kWatcher, 0), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
}

TestDesktop::~TestDesktop() {
    for (GDBusMethodInvocation* invocation : unanswered_) g_object_unref(invocation);
    if (!connection_) return;
    g_dbus_connection_unregister_object(connection_, object_);
    // Signals that have arrived already are not to be told to one that has gone.
    for (const guint subscription : subscriptions_)
        g_dbus_connection_signal_unsubscribe(connection_, subscription);
    g_dbus_connection_close_sync(connection_, nullptr, nullptr);
    g_object_unref(connection_);
}

void TestDesktop::OnCall(const char* method, GVariant* parameters, GDBusMethodInvocation* invocation) {
    if (silent) return unanswered_.push_back(invocation);
    // Properties come as calls, too, so that they can be left unanswered.
    if (std::string(method) == "Get") {
        GVariant* value = g_variant_new_variant(g_variant_new_boolean(host_));
        return g_dbus_method_invocation_return_value(invocation, g_variant_new_tuple(&value, 1));
    }
    const char* name = nullptr;
    g_variant_get(parameters, "(&s)", &name);
    if (refuses) {
        refused_.push_back(name);
        return g_dbus_method_invocation_return_error_literal(invocation, G_DBUS_ERROR,
                                                             G_DBUS_ERROR_LIMITS_EXCEEDED, "no room");
    }
    items_.push_back(name);
    g_dbus_method_invocation_return_value(invocation, nullptr);
}

void TestDesktop::AnswerNow() {
    silent = false;
    for (GDBusMethodInvocation* invocation : std::exchange(unanswered_, {})) {
        OnCall(g_dbus_method_invocation_get_method_name(invocation),
               g_dbus_method_invocation_get_parameters(invocation), invocation);
    }
}

void TestDesktop::SetHost(bool exists) {
    host_ = exists;
    g_dbus_connection_emit_signal(connection_, nullptr, kWatcherObject, kWatcher,
                                  exists ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered",
                                  nullptr, nullptr);
}

Variant TestDesktop::Call(const std::string& item, const char* path, const char* interface,
                          const char* method, GVariant* parameters) {
    struct Answer {
        bool there = false;
        GVariant* value = nullptr;
    } answer;
    g_dbus_connection_call(
        connection_, item.c_str(), path, interface, method, parameters, nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, 1500, nullptr,
        [](GObject* connection, GAsyncResult* result, void* data) {
            auto& received = *static_cast<Answer*>(data);
            received.value = g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, nullptr);
            received.there = true;
        },
        &answer);
    while (!answer.there) g_main_context_iteration(nullptr, TRUE);
    return Variant(answer.value);
}

bool TestDesktop::Tell(const std::string& item, const char* method) {
    return Call(item, "/StatusNotifierItem", "org.kde.StatusNotifierItem", method,
                g_variant_new("(ii)", 7, 8)) != nullptr;
}

Variant TestDesktop::Property(const std::string& item, const char* name) {
    const Variant answer = Call(item, "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                                g_variant_new("(ss)", "org.kde.StatusNotifierItem", name));
    if (!answer) return nullptr;
    GVariant* value = nullptr;
    g_variant_get(answer.get(), "(v)", &value);
    return Variant(value);
}

Variant TestDesktop::Menu(const std::string& item, const char* method, GVariant* parameters) {
    return Call(item, "/MenuBar", "com.canonical.dbusmenu", method, parameters);
}

std::string TestDesktop::TakeSignals() { return std::exchange(signals_, {}); }
