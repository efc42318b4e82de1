#include <winsock2.h>

#include <stdexcept>
#include <utility>

#include "tests/net/RawPeer.h"

namespace {

// Descriptors are the system's handles, which are small numbers.
SOCKET Socket(int descriptor) { return static_cast<SOCKET>(descriptor); }

int NewSocket() {
    static WSADATA data;
    static const int started = WSAStartup(MAKEWORD(2, 2), &data);
    static_cast<void>(started);
    return static_cast<int>(socket(AF_INET, SOCK_STREAM, 0));
}

sockaddr_in ThisComputer(std::uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

void Hurry(int descriptor) {
    const BOOL on = TRUE;
    setsockopt(Socket(descriptor), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
}

bool IsReady(int descriptor, std::chrono::milliseconds limit) {
    fd_set ready;
    FD_ZERO(&ready);
    FD_SET(Socket(descriptor), &ready);
    timeval time{static_cast<long>(limit.count() / 1000), static_cast<long>(limit.count() % 1000 * 1000)};
    return select(0, &ready, nullptr, nullptr, &time) == 1;
}

int ListenOn(std::uint16_t& port) {
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

}  // namespace

RawConnection::~RawConnection() {
    if (descriptor_ >= 0) closesocket(Socket(descriptor_));
}

RawConnection RawConnection::To(std::uint16_t port) {
    const int descriptor = NewSocket();
    const sockaddr_in address = ThisComputer(port);
    if (connect(Socket(descriptor), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("no connection");
    Hurry(descriptor);
    return RawConnection(descriptor);
}

bool RawConnection::Send(const std::string& bytes) const {
    for (std::size_t sent = 0; sent < bytes.size();) {
        const int count =
            send(Socket(descriptor_), bytes.data() + sent, static_cast<int>(bytes.size() - sent), 0);
        if (count <= 0) return false;
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

std::size_t RawConnection::TrySend(const std::string& bytes) const {
    u_long on = 1, off = 0;
    ioctlsocket(Socket(descriptor_), static_cast<long>(FIONBIO), &on);
    const int count = send(Socket(descriptor_), bytes.data(), static_cast<int>(bytes.size()), 0);
    ioctlsocket(Socket(descriptor_), static_cast<long>(FIONBIO), &off);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

bool RawConnection::Receive(std::chrono::milliseconds limit) {
    char buffer[65536];
    if (ended_ || !IsReady(descriptor_, limit)) return false;
    const int count = recv(Socket(descriptor_), buffer, sizeof buffer, 0);
    if (count <= 0) {
        ended_ = true;
        return false;
    }
    received_.append(buffer, static_cast<std::size_t>(count));
    return true;
}

void RawConnection::EndSending() const { shutdown(Socket(descriptor_), SD_SEND); }

void RawConnection::Reset() {
    const linger atOnce{1, 0};
    setsockopt(Socket(descriptor_), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&atOnce),
               sizeof atOnce);
    closesocket(Socket(std::exchange(descriptor_, -1)));
}

RawServer::RawServer(std::function<void(RawConnection&)> dialogue) : listener_(ListenOn(port_)) {
    thread_ = std::thread([this, dialogue = std::move(dialogue)] {
        const int accepted = static_cast<int>(accept(Socket(listener_), nullptr, nullptr));
        if (accepted < 0) return;
        Hurry(accepted);
        RawConnection connection(accepted);
        dialogue(connection);
    });
}

RawServer::~RawServer() {
    // A dialogue that never began is waiting for somebody.
    const int nobody = NewSocket();
    const sockaddr_in address = ThisComputer(port_);
    connect(Socket(nobody), reinterpret_cast<const sockaddr*>(&address), sizeof address);
    closesocket(Socket(nobody));
    thread_.join();
    closesocket(Socket(listener_));
}

std::uint16_t FreePort() {
    std::uint16_t port = 0;
    closesocket(Socket(ListenOn(port)));
    return port;
}

double ThreadSeconds() {
    FILETIME created, ended, kernel, user;
    GetThreadTimes(GetCurrentThread(), &created, &ended, &kernel, &user);
    const auto seconds = [](const FILETIME& time) {
        return (static_cast<double>(time.dwHighDateTime) * 4294967296.0 + time.dwLowDateTime) * 1e-7;
    };
    return seconds(kernel) + seconds(user);
}

int CountHandles() {
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return static_cast<int>(count);
}

// Every socket brings messages of its own, and Wine asks another process for each of them.
double LongestTurn() { return 0.2; }
