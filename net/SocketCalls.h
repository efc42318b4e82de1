#pragma once
// What Linux and Windows do for sockets. No call waits. Errors are numbers of theirs.

#include <cstddef>
#include <cstdint>
#include <string>

namespace SocketCalls {

using Handle = std::intptr_t;
constexpr Handle kNoHandle = -1;

// A socket that listens on all addresses of this computer; port 0 takes any free one. kNoHandle and an error
// when the port is taken.
Handle Listen(std::uint16_t port, int& error);
std::uint16_t LocalPort(Handle handle);

// A connection that waited at a listening socket, and the dotted address of the computer that it comes from.
struct Request {
    Handle handle = kNoHandle;
    std::string address;
};

// A dotted address ("192.168.0.7"), and one of this computer.
bool IsAddress(const std::string& text);
bool IsOwnAddress(const std::string& address);

// The next connection that waits; one without a handle when there is none. Where the process can open no more
// handles, the connection is closed at once.
Request Accept(Handle listener);

// Begins to connect to a dotted address. The handle becomes writable when that is decided; ConnectError then
// tells how, 0 for connected.
Handle BeginConnect(const std::string& address, std::uint16_t port, int& error);
int ConnectError(Handle handle);

enum class Outcome { Done, Later, Ended, Failed };
struct Transfer {
    Outcome outcome;
    std::size_t bytes = 0;  // Done: how many
    int error = 0;          // Failed: why
};
Transfer Receive(Handle handle, char* buffer, std::size_t size);
Transfer Send(Handle handle, const char* data, std::size_t size);

// Sleeps until something can be read, for a millisecond at most; false when nothing can.
bool AwaitForAMoment(Handle handle);

// What was sent still reaches the other side.
void Close(Handle handle);

std::wstring Describe(int error);

}  // namespace SocketCalls
