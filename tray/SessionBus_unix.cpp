#include "tray/SessionBus_unix.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <utility>

namespace {

// The bus of a login session whose environment does not name it.
std::string AddressInRuntimeFolder() {
    const char* folder = std::getenv("XDG_RUNTIME_DIR");
    if (!folder || !*folder) return "";
    const std::string path = std::string(folder) + "/bus";
    struct stat status {};
    if (stat(path.c_str(), &status) != 0 || !S_ISSOCK(status.st_mode) || status.st_uid != getuid()) return "";
    g_autofree char* escaped = g_dbus_address_escape_value(path.c_str());
    return std::string("unix:path=") + escaped;
}

// The addresses without those that ask for a new bus or for none.
std::string Usable(const std::string& addresses) {
    std::string usable;
    for (std::size_t begin = 0, end; begin < addresses.size(); begin = end + 1) {
        end = std::min(addresses.find(';', begin), addresses.size());
        const std::string address = addresses.substr(begin, end - begin);
        if (address.empty() || address.starts_with("autolaunch:") || address.starts_with("disabled:"))
            continue;
        if (!usable.empty()) usable += ';';
        usable += address;
    }
    return g_dbus_is_address(usable.c_str()) ? usable : "";
}

// Whether the error, which is freed, says that the caller has cancelled.
bool TakeCancelled(GError* error) {
    const bool cancelled = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_CANCELLED);
    g_clear_error(&error);
    return cancelled;
}

}  // namespace

std::string SessionBusAddress() {
    const char* named = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    return named && *named ? Usable(named) : AddressInRuntimeFolder();
}

void ConnectToSessionBus(GCancellable* cancellable, std::function<void(GDBusConnection* connection)> then) {
    using Then = std::function<void(GDBusConnection*)>;
    constexpr auto flags = GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    g_dbus_connection_new_for_address(
        SessionBusAddress().c_str(), flags, nullptr, cancellable,
        [](GObject*, GAsyncResult* result, void* data) {
            const std::unique_ptr<Then> then(static_cast<Then*>(data));
            GError* error = nullptr;
            GDBusConnection* connection = g_dbus_connection_new_for_address_finish(result, &error);
            if (!TakeCancelled(error)) (*then)(connection);
        },
        new Then(std::move(then)));
}

void CallOnBus(GDBusConnection* connection, const BusMethod& method, GVariant* parameters,
               GCancellable* cancellable, std::function<void(GVariant* answer)> then) {
    constexpr int answerMilliseconds = 10000;
    using Then = std::function<void(GVariant*)>;
    g_dbus_connection_call(
        connection, method.name, method.path, method.interface, method.method, parameters,
        method.answerType ? G_VARIANT_TYPE(method.answerType) : nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
        answerMilliseconds, cancellable,
        [](GObject* source, GAsyncResult* result, void* data) {
            const std::unique_ptr<Then> then(static_cast<Then*>(data));
            GError* error = nullptr;
            g_autoptr(GVariant) answer =
                g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, &error);
            if (!TakeCancelled(error)) (*then)(answer);
        },
        new Then(std::move(then)));
}

void Disconnect(GDBusConnection*& connection) {
    if (!connection) return;
    const auto close = [](GObject* source, GAsyncResult*, void*) {
        g_dbus_connection_close(G_DBUS_CONNECTION(source), nullptr, nullptr, nullptr);
    };
    // What has been answered has to go out first.
    if (!g_dbus_connection_is_closed(connection))
        g_dbus_connection_flush(connection, nullptr, close, nullptr);
    g_object_unref(connection);
    connection = nullptr;
}
