#include <winsock2.h>

#include "net/SocketCalls.h"

namespace SocketCalls {

namespace {

SOCKET Socket(Handle handle) { return static_cast<SOCKET>(handle); }

// The sockets of the system, in use from the first call to the end.
void StartSockets() {
    static WSADATA data;
    static const int started = WSAStartup(MAKEWORD(2, 2), &data);
    static_cast<void>(started);
}

void Set(SOCKET socket, int level, int option) {
    const BOOL on = TRUE;
    setsockopt(socket, level, option, reinterpret_cast<const char*>(&on), sizeof on);
}

void MakeNonBlocking(SOCKET socket) {
    u_long on = 1;
    ioctlsocket(socket, static_cast<long>(FIONBIO), &on);
}

Handle Prepared(SOCKET socket) {
    if (socket == INVALID_SOCKET) return kNoHandle;
    MakeNonBlocking(socket);
    Set(socket, IPPROTO_TCP, TCP_NODELAY);
    // Finds out about computers that were switched off.
    Set(socket, SOL_SOCKET, SO_KEEPALIVE);
    return static_cast<Handle>(socket);
}

Transfer Result(int count) {
    if (count > 0) return {Outcome::Done, static_cast<std::size_t>(count)};
    if (count == 0) return {Outcome::Ended};
    const int error = WSAGetLastError();
    if (error == WSAEWOULDBLOCK) return {Outcome::Later};
    return {Outcome::Failed, 0, error};
}

// A call takes no more than a positive number of bytes.
int Limited(std::size_t size) { return static_cast<int>(size > 1'000'000 ? 1'000'000 : size); }

}  // namespace

Handle Listen(std::uint16_t port, int& error) {
    StartSockets();
    const SOCKET listener = socket(AF_INET, SOCK_STREAM, 0);
    if (listener != INVALID_SOCKET) {
        // Here it is this that keeps other programs from taking the port as well.
        Set(listener, SOL_SOCKET, SO_EXCLUSIVEADDRUSE);
        MakeNonBlocking(listener);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        if (bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0 &&
            listen(listener, SOMAXCONN) == 0)
            return static_cast<Handle>(listener);
    }
    error = WSAGetLastError();
    if (listener != INVALID_SOCKET) closesocket(listener);
    return kNoHandle;
}

std::uint16_t LocalPort(Handle handle) {
    sockaddr_in address{};
    int size = sizeof address;
    getsockname(Socket(handle), reinterpret_cast<sockaddr*>(&address), &size);
    return ntohs(address.sin_port);
}

Handle Accept(Handle listener) { return Prepared(accept(Socket(listener), nullptr, nullptr)); }

Handle BeginConnect(const std::string& address, std::uint16_t port, int& error) {
    StartSockets();
    sockaddr_in target{};
    target.sin_family = AF_INET;
    target.sin_port = htons(port);
    target.sin_addr.s_addr = inet_addr(address.c_str());
    if (target.sin_addr.s_addr == INADDR_NONE) {
        error = WSAEINVAL;
        return kNoHandle;
    }
    const Handle handle = Prepared(socket(AF_INET, SOCK_STREAM, 0));
    if (handle == kNoHandle ||
        (connect(Socket(handle), reinterpret_cast<sockaddr*>(&target), sizeof target) != 0 &&
         WSAGetLastError() != WSAEWOULDBLOCK)) {
        error = WSAGetLastError();
        if (handle != kNoHandle) closesocket(Socket(handle));
        return kNoHandle;
    }
    return handle;
}

int ConnectError(Handle handle) {
    int error = 0;
    int size = sizeof error;
    getsockopt(Socket(handle), SOL_SOCKET, SO_ERROR, reinterpret_cast<char*>(&error), &size);
    return error;
}

Transfer Receive(Handle handle, char* buffer, std::size_t size) {
    return Result(recv(Socket(handle), buffer, Limited(size), 0));
}

Transfer Send(Handle handle, const char* data, std::size_t size) {
    return Result(send(Socket(handle), data, Limited(size), 0));
}

bool AwaitForAMoment(Handle handle) {
    fd_set awaited;
    FD_ZERO(&awaited);
    FD_SET(Socket(handle), &awaited);
    timeval moment{0, 1000};
    return select(0, &awaited, nullptr, nullptr, &moment) == 1;
}

void Close(Handle handle) {
    // Closed with something unread, the connection would be reset and take what was sent last with it.
    char unread[4096];
    shutdown(Socket(handle), SD_SEND);
    for (int i = 0; i < 16 && recv(Socket(handle), unread, sizeof unread, 0) > 0; ++i) {
    }
    closesocket(Socket(handle));
}

std::wstring Describe(int error) {
    wchar_t text[512] = L"";
    DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  static_cast<DWORD>(error), 0, text, 512, nullptr);
    while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r')) --length;
    return {text, length};
}

}  // namespace SocketCalls
