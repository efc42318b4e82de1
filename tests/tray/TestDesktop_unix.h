#pragma once
// A session bus that only this test knows, and a desktop on it that shows icons: a watcher with a host, which
// does what the test says. The icons live in this process, too, so calls to them let events run.

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/Shell_unix.h"

struct VariantUnref {
    void operator()(GVariant* variant) const { g_variant_unref(variant); }
};
using Variant = std::unique_ptr<GVariant, VariantUnref>;

class TestBus {
  public:
    // Starts the bus and names it in the environment. It starts no services and reads no configuration of the
    // machine.
    TestBus() {
        const std::string folder = std::getenv("XDG_RUNTIME_DIR"), file = folder + "/bus.conf";
        std::ofstream(file)
            << R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig><type>session</type><listen>unix:dir=)"
            << folder << R"(</listen><auth>EXTERNAL</auth>
<policy context="default"><allow send_destination="*" eavesdrop="true"/><allow eavesdrop="true"/>
<allow own="*"/></policy></busconfig>)";
        std::istringstream(ShellOutput("dbus-daemon --config-file=" + file +
                                       " --fork --print-address=1 --print-pid=1 2>/dev/null")) >>
            address_ >> pid_;
        EXPECT_GT(pid_, 0) << "no dbus-daemon";
        setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), 1);
    }
    // Ends it; the environment names none then.
    ~TestBus() {
        setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
        if (pid_ > 0) kill(pid_, SIGTERM);
    }
    TestBus(const TestBus&) = delete;
    TestBus& operator=(const TestBus&) = delete;
    const std::string& Address() const { return address_; }

  private:
    std::string address_;
    pid_t pid_ = 0;
};

class TestDesktop {
  public:
    // Connects and is the watcher. host: whether a host is there from the beginning.
    TestDesktop(const TestBus& bus, bool host) : host_(host) {
        constexpr auto flags = GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                    G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
        connection_ =
            g_dbus_connection_new_for_address_sync(bus.Address().c_str(), flags, nullptr, nullptr, nullptr);
        if (!connection_) return;
        static GDBusNodeInfo* const info =
            g_dbus_node_info_new_for_xml(R"(<node><interface name='org.kde.StatusNotifierWatcher'>
    <property name='IsStatusNotifierHostRegistered' type='b' access='read'/>
    <method name='RegisterStatusNotifierItem'><arg type='s' direction='in'/></method>
</interface></node>)",
                                         nullptr);
        static const GDBusInterfaceVTable table = {
            [](GDBusConnection*, const char*, const char*, const char*, const char* method,
               GVariant* parameters, GDBusMethodInvocation* invocation,
               void* self) { static_cast<TestDesktop*>(self)->OnCall(method, parameters, invocation); },
            nullptr,
            nullptr,
            {}};
        object_ = g_dbus_connection_register_object(connection_, kWatcherObject, info->interfaces[0], &table,
                                                    this, nullptr, nullptr);
        Subscribe("org.freedesktop.DBus", "NameOwnerChanged");
        for (const char* interface : {"org.kde.StatusNotifierItem", "com.canonical.dbusmenu"})
            Subscribe(interface, nullptr);
        Variant(g_dbus_connection_call_sync(connection_, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                            "org.freedesktop.DBus", "RequestName",
                                            g_variant_new("(su)", kWatcher, 0), nullptr,
                                            G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    }
    // Leaves the bus.
    ~TestDesktop() {
        for (GDBusMethodInvocation* invocation : unanswered_) g_object_unref(invocation);
        if (!connection_) return;
        g_dbus_connection_unregister_object(connection_, object_);
        // Signals that have arrived already are not to be told to one that has gone.
        for (const guint subscription : subscriptions_)
            g_dbus_connection_signal_unsubscribe(connection_, subscription);
        g_dbus_connection_close_sync(connection_, nullptr, nullptr);
        g_object_unref(connection_);
    }
    TestDesktop(const TestDesktop&) = delete;
    TestDesktop& operator=(const TestDesktop&) = delete;

    // byProperty: as a watcher tells it that has no signals of its own for it.
    void SetHost(bool exists, bool byProperty = false) {
        host_ = exists;
        if (byProperty) {
            g_dbus_connection_emit_signal(
                connection_, nullptr, kWatcherObject, "org.freedesktop.DBus.Properties", "PropertiesChanged",
                g_variant_new_parsed("(%s, {'IsStatusNotifierHostRegistered': <%b>}, @as [])", kWatcher,
                                     exists),
                nullptr);
            return;
        }
        g_dbus_connection_emit_signal(
            connection_, nullptr, kWatcherObject, kWatcher,
            exists ? "StatusNotifierHostRegistered" : "StatusNotifierHostUnregistered", nullptr, nullptr);
    }
    bool refuses = false;                                // answers every icon with an error
    bool silent = false;                                 // answers nothing
    bool Asked() const { return !unanswered_.empty(); }  // and has not answered yet
    // What was left unanswered, and from now on.
    void AnswerNow() {
        silent = false;
        for (GDBusMethodInvocation* invocation : std::exchange(unanswered_, {}))
            OnCall(g_dbus_method_invocation_get_method_name(invocation),
                   g_dbus_method_invocation_get_parameters(invocation), invocation);
    }

    // The names of the icons that are there, in the order in which they came.
    const std::vector<std::string>& Items() const { return items_; }
    const std::vector<std::string>& Refused() const { return refused_; }

    // A method of an icon that takes a place: true when the icon is there.
    bool Tell(const std::string& item, const char* method) {
        return Call(item, "/StatusNotifierItem", "org.kde.StatusNotifierItem", method,
                    g_variant_new("(ii)", 7, 8)) != nullptr;
    }
    // Null for an error, also when there is no such object.
    Variant Property(const std::string& item, const char* name, const char* path = "/StatusNotifierItem",
                     const char* interface = "org.kde.StatusNotifierItem") {
        const Variant answer = Call(item, path, "org.freedesktop.DBus.Properties", "Get",
                                    g_variant_new("(ss)", interface, name));
        if (!answer) return nullptr;
        GVariant* value = nullptr;
        g_variant_get(answer.get(), "(v)", &value);
        return Variant(value);
    }
    // A method of an icon's menu; null for an error.
    Variant Menu(const std::string& item, const char* method, GVariant* parameters) {
        return Call(item, "/MenuBar", "com.canonical.dbusmenu", method, parameters);
    }

    // The signals of icons and menus since the last look, as names that end in blanks.
    std::string TakeSignals() { return std::exchange(signals_, {}); }

  private:
    static constexpr char kWatcher[] = "org.kde.StatusNotifierWatcher";
    static constexpr char kWatcherObject[] = "/StatusNotifierWatcher";

    void Subscribe(const char* interface, const char* signal) {
        const auto heard = [](GDBusConnection*, const char*, const char*, const char*, const char* name,
                              GVariant* parameters,
                              void* self) { static_cast<TestDesktop*>(self)->OnSignal(name, parameters); };
        subscriptions_.push_back(
            g_dbus_connection_signal_subscribe(connection_, nullptr, interface, signal, nullptr, nullptr,
                                               G_DBUS_SIGNAL_FLAGS_NONE, heard, this, nullptr));
    }
    void OnSignal(const std::string& signal, GVariant* parameters) {
        if (signal != "NameOwnerChanged") {
            signals_ += signal + ' ';
            return;
        }
        const char *name = nullptr, *before = nullptr, *after = nullptr;
        g_variant_get(parameters, "(&s&s&s)", &name, &before, &after);
        if (!*after) std::erase(items_, name);
    }
    void OnCall(const char* method, GVariant* parameters, GDBusMethodInvocation* invocation) {
        if (silent) return unanswered_.push_back(invocation);
        // Properties come as calls, too, so that they can be left unanswered.
        if (std::string(method) == "Get") {
            GVariant* value = g_variant_new_variant(g_variant_new_boolean(host_));
            return g_dbus_method_invocation_return_value(invocation, g_variant_new_tuple(&value, 1));
        }
        const char* name = nullptr;
        g_variant_get(parameters, "(&s)", &name);
        (refuses ? refused_ : items_).push_back(name);
        if (refuses)
            g_dbus_method_invocation_return_error_literal(invocation, G_DBUS_ERROR,
                                                          G_DBUS_ERROR_LIMITS_EXCEEDED, "no room");
        else
            g_dbus_method_invocation_return_value(invocation, nullptr);
    }
    Variant Call(const std::string& item, const char* path, const char* interface, const char* method,
                 GVariant* parameters) {
        GAsyncResult* answer = nullptr;
        g_dbus_connection_call(
            connection_, item.c_str(), path, interface, method, parameters, nullptr,
            G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr,
            [](GObject*, GAsyncResult* result, void* to) {
                *static_cast<GAsyncResult**>(to) = G_ASYNC_RESULT(g_object_ref(result));
            },
            &answer);
        while (!answer) g_main_context_iteration(nullptr, TRUE);
        GVariant* const value = g_dbus_connection_call_finish(connection_, answer, nullptr);
        g_object_unref(answer);
        return Variant(value);
    }

    GDBusConnection* connection_ = nullptr;
    bool host_;
    std::vector<std::string> items_, refused_;
    std::vector<GDBusMethodInvocation*> unanswered_;
    std::string signals_;
    guint object_ = 0;
    std::vector<guint> subscriptions_;
};
