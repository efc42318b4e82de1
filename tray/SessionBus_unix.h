#pragma once
// Connections to the user's session bus, over which programs of a desktop talk to each other. Unlike
// g_bus_get, nothing here starts a bus, and the program goes on when the bus ends. GDBus reads in a thread of
// its own, but what it has read is handed over, and everything here calls back, in the event loop of the
// windows' thread.

#include <gio/gio.h>

#include <functional>
#include <string>

// Where the session bus listens; empty when there is none.
std::string SessionBusAddress();

// Opens a connection that is not shared with others and hands it over later; it is the receiver's then. Null
// when there is no bus. Nothing is called back when the call has been cancelled. cancellable: may be null.
void ConnectToSessionBus(GCancellable* cancellable, std::function<void(GDBusConnection* connection)> then);

// Calls a method without waiting for it and hands the answer over, which is gone after that; null for an
// error, for an answer of another type and for none within ten seconds. Nothing is called back when the call
// has been cancelled. parameters: floating. D-Bus starts no program to answer the call.
struct BusMethod {
    const char *name, *path, *interface, *method;
    const char* answerType;  // null for any
};
void CallOnBus(GDBusConnection* connection, const BusMethod& method, GVariant* parameters,
               GCancellable* cancellable, std::function<void(GVariant* answer)> then);

// Closes a connection without waiting for it, gives it up and sets the pointer to null.
void Disconnect(GDBusConnection*& connection);
