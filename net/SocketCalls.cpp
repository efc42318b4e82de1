#include SYSTEM_SOCKETS  // the header of the platform's sockets, named by CMake

#include "net/SocketCalls.h"

namespace SocketCalls {

namespace {

SystemSockets::Socket Of(Handle handle) { return static_cast<SystemSockets::Socket>(handle); }

void Set(Handle handle, int level, int option) {
    const int on = 1;
    setsockopt(Of(handle), level, option, reinterpret_cast<const char*>(&on), sizeof on);
}

Handle Prepared(Handle handle) {
    if (handle == kNoHandle) return handle;
    Set(handle, IPPROTO_TCP, TCP_NODELAY);
    // Finds out about computers that were switched off.
    Set(handle, SOL_SOCKET, SO_KEEPALIVE);
    return handle;
}

// Tells why the last call failed and closes the socket, if there is one.
Handle GivenUp(Handle handle, int& error) {
    error = SystemSockets::LastError();
    if (handle != kNoHandle) SystemSockets::Close(Of(handle));
    return kNoHandle;
}

Transfer Result(long count) {
    if (count > 0) return {Outcome::Done, static_cast<std::size_t>(count)};
    if (count == 0) return {Outcome::Ended};
    const int error = SystemSockets::LastError();
    if (SystemSockets::IsForLater(error)) return {Outcome::Later};
    return {Outcome::Failed, 0, error};
}

}  // namespace

Handle Listen(std::uint16_t port, int& error) {
    const auto listener = static_cast<Handle>(SystemSockets::New());
    if (listener == kNoHandle) return GivenUp(listener, error);
    Set(listener, SOL_SOCKET, SystemSockets::kListenOption);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    if (bind(Of(listener), reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        listen(Of(listener), SOMAXCONN) != 0)
        return GivenUp(listener, error);
    return listener;
}

std::uint16_t LocalPort(Handle handle) {
    sockaddr_in address{};
    SystemSockets::Length size = sizeof address;
    getsockname(Of(handle), reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

Request Accept(Handle listener) {
    sockaddr_in peer{};
    const auto handle = static_cast<Handle>(SystemSockets::AcceptNext(Of(listener), peer));
    char dotted[INET_ADDRSTRLEN] = "";
    if (handle != kNoHandle) inet_ntop(AF_INET, &peer.sin_addr, dotted, sizeof dotted);
    return {Prepared(handle), dotted};
}

bool IsAddress(const std::string& text) {
    in_addr address{};
    return inet_pton(AF_INET, text.c_str(), &address) == 1;
}

// A socket can be bound to no other.
bool IsOwnAddress(const std::string& address) {
    sockaddr_in own{};
    own.sin_family = AF_INET;
    if (inet_pton(AF_INET, address.c_str(), &own.sin_addr) != 1) return false;
    const SystemSockets::Socket socket = SystemSockets::New();
    const bool bound = bind(socket, reinterpret_cast<sockaddr*>(&own), sizeof own) == 0;
    SystemSockets::Close(socket);
    return bound;
}

Handle BeginConnect(const std::string& address, std::uint16_t port, int& error) {
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_port = htons(port);
    if (inet_pton(AF_INET, address.c_str(), &target.sin_addr) != 1) {
        error = SystemSockets::kInvalid;
        return kNoHandle;
    }
    const Handle handle = Prepared(static_cast<Handle>(SystemSockets::New()));
    if (handle == kNoHandle) return GivenUp(handle, error);
    if (connect(Of(handle), reinterpret_cast<sockaddr*>(&target), sizeof target) != 0 &&
        !SystemSockets::IsConnecting(SystemSockets::LastError()))
        return GivenUp(handle, error);
    return handle;
}

int ConnectError(Handle handle) {
    int error = 0;
    SystemSockets::Length size = sizeof error;
    getsockopt(Of(handle), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size);
    return error;
}

Transfer Receive(Handle handle, char* buffer, std::size_t size) {
    return Result(SystemSockets::Receive(Of(handle), buffer, size));
}

Transfer Send(Handle handle, const char* data, std::size_t size) {
    return Result(SystemSockets::Send(Of(handle), data, size));
}

bool AwaitForAMoment(Handle handle) { return SystemSockets::AwaitForAMoment(Of(handle)); }

void Close(Handle handle) {
    // Closed with something unread, the connection would be reset and take what was sent last with it.
    char unread[4096];
    shutdown(Of(handle), SystemSockets::kEndOfSending);
    for (int i = 0; i < 16 && SystemSockets::Receive(Of(handle), unread, sizeof unread) > 0; ++i) {
    }
    SystemSockets::Close(Of(handle));
}

std::wstring Describe(int error) { return SystemSockets::Describe(error); }

}  // namespace SocketCalls
