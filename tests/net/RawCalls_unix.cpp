#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "tests/net/RawCalls.h"

namespace RawCalls {

namespace {

sockaddr_in ThisComputer(std::uint16_t port, unsigned computer = 1) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK - 1 + computer);
    return address;
}

int Hurried(int descriptor) {
    const int on = 1;
    setsockopt(descriptor, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    return descriptor;
}

}  // namespace

int Connect(std::uint16_t port, unsigned computer) {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in own = ThisComputer(0, computer), address = ThisComputer(port);
    if (bind(descriptor, reinterpret_cast<const sockaddr*>(&own), sizeof own) != 0 ||
        connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        close(descriptor);
        throw std::runtime_error("no connection");
    }
    return Hurried(descriptor);
}

int Listen(std::uint16_t& port) {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address = ThisComputer(0);
    socklen_t size = sizeof address;
    if (bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(listener, 16) != 0)
        throw std::runtime_error("no port to listen on");
    getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size);
    port = ntohs(address.sin_port);
    return listener;
}

int Accept(int listener) {
    const int accepted = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    return accepted < 0 ? accepted : Hurried(accepted);
}

void StopAccepting(int listener, std::uint16_t) { shutdown(listener, SHUT_RDWR); }

bool IsReady(int descriptor, std::chrono::milliseconds limit) {
    pollfd ready{descriptor, POLLIN, 0};
    return poll(&ready, 1, static_cast<int>(limit.count())) == 1;
}

long Receive(int descriptor, char* buffer, std::size_t size) { return recv(descriptor, buffer, size, 0); }

long Send(int descriptor, const char* bytes, std::size_t size, bool wait) {
    return send(descriptor, bytes, size, MSG_NOSIGNAL | (wait ? 0 : MSG_DONTWAIT));
}

void EndSending(int descriptor) { shutdown(descriptor, SHUT_WR); }

void Close(int descriptor, bool reset) {
    const linger atOnce{1, 0};
    if (reset) setsockopt(descriptor, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    close(descriptor);
}

int CountHandles() {
    return static_cast<int>(std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                                          std::filesystem::directory_iterator()));
}

}  // namespace RawCalls
