#pragma once
// Connections to the user's session bus, over which programs of a desktop talk to each other. Unlike the
// library's own search for the bus nothing here starts one, and no connection ends the program with the bus.

#include <gio/gio.h>

#include <functional>
#include <string>

// Where the session bus listens; empty when there is none.
std::string SessionBusAddress();

// Opens a connection that is not shared with others and calls back from the event loop, in every case later;
// g_dbus_connection_new_for_address_finish gives the connection or the error.
void ConnectToSessionBus(GCancellable* cancellable, GAsyncReadyCallback callback, void* data);

// Calls a method without waiting for it and hands the answer over, null when there is none within ten
// seconds, or another than of that type. Nothing is called back when the call has been cancelled. parameters:
// floating. Nobody is started who is not there.
struct BusMethod {
    const char *name, *path, *interface, *method;
    const char* answerType;  // null for any
};
void CallOnBus(GDBusConnection* connection, const BusMethod& method, GVariant* parameters,
               GCancellable* cancellable, std::function<void(GVariant* answer)> then);

// Closes a connection without waiting for it, gives it up and sets the pointer to null.
void Disconnect(GDBusConnection*& connection);
