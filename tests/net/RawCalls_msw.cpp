#include <winsock2.h>

#include <stdexcept>

#include "tests/net/RawCalls.h"

namespace RawCalls {

namespace {

// Descriptors are the handles of Windows, which are small numbers.
SOCKET Socket(int descriptor) { return static_cast<SOCKET>(descriptor); }

int NewSocket() {
    static WSADATA data;
    static const int started = WSAStartup(MAKEWORD(2, 2), &data);
    static_cast<void>(started);
    return static_cast<int>(socket(AF_INET, SOCK_STREAM, 0));
}

sockaddr_in ThisComputer(std::uint16_t port, unsigned computer = 1) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK - 1 + computer);
    return address;
}

int Hurried(int descriptor) {
    const BOOL on = TRUE;
    setsockopt(Socket(descriptor), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
    return descriptor;
}

}  // namespace

int Connect(std::uint16_t port, unsigned computer) {
    const int descriptor = NewSocket();
    const sockaddr_in own = ThisComputer(0, computer), address = ThisComputer(port);
    if (bind(Socket(descriptor), reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0 ||
        connect(Socket(descriptor), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        closesocket(Socket(descriptor));
        throw std::runtime_error("no connection");
    }
    return Hurried(descriptor);
}

int Listen(std::uint16_t& port) {
    const int listener = NewSocket();
    sockaddr_in address = ThisComputer(0);
    int size = sizeof address;
    if (bind(Socket(listener), reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        listen(Socket(listener), 16) != 0)
        throw std::runtime_error("no port to listen on");
    getsockname(Socket(listener), reinterpret_cast<sockaddr*>(&address), &size);
    port = ntohs(address.sin_port);
    return listener;
}

int Accept(int listener) {
    const int accepted = static_cast<int>(accept(Socket(listener), nullptr, nullptr));
    return accepted < 0 ? accepted : Hurried(accepted);
}

void StopAccepting(int, std::uint16_t port) {
    // Somebody who says nothing, for the one who may still be waiting.
    const int nobody = NewSocket();
    const sockaddr_in address = ThisComputer(port);
    connect(Socket(nobody), reinterpret_cast<const sockaddr*>(&address), sizeof address);
    closesocket(Socket(nobody));
}

bool IsReady(int descriptor, std::chrono::milliseconds limit) {
    fd_set ready;
    FD_ZERO(&ready);
    FD_SET(Socket(descriptor), &ready);
    timeval time{static_cast<long>(limit.count() / 1000), static_cast<long>(limit.count() % 1000 * 1000)};
    return select(0, &ready, nullptr, nullptr, &time) == 1;
}

long Receive(int descriptor, char* buffer, std::size_t size) {
    return recv(Socket(descriptor), buffer, static_cast<int>(size), 0);
}

long Send(int descriptor, const char* bytes, std::size_t size, bool wait) {
    u_long on = 1, off = 0;
    if (!wait) ioctlsocket(Socket(descriptor), static_cast<long>(FIONBIO), &on);
    const long count = send(Socket(descriptor), bytes, static_cast<int>(size), 0);
    if (!wait) ioctlsocket(Socket(descriptor), static_cast<long>(FIONBIO), &off);
    return count;
}

void EndSending(int descriptor) { shutdown(Socket(descriptor), SD_SEND); }

void Close(int descriptor, bool reset) {
    const linger atOnce{1, 0};
    if (reset)
        setsockopt(Socket(descriptor), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&atOnce),
                   sizeof atOnce);
    closesocket(Socket(descriptor));
}

int CountHandles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<int>(count);
}

}  // namespace RawCalls
