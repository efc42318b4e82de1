#include SYSTEM_SOCKETS  // the header of the platform's sockets, named by CMake

#include "tests/net/RawPeer.h"

#include <random>
#include <utility>

#include "net/SocketCalls.h"

namespace {

using SystemSockets::Socket;
using Milliseconds = std::chrono::milliseconds;

constexpr Milliseconds kForever = std::chrono::hours(1);

// The handles of Windows are small numbers, too.
Socket Of(int descriptor) { return static_cast<Socket>(descriptor); }

void Set(int descriptor, int level, int option, const auto& value) {
    setsockopt(Of(descriptor), level, option, reinterpret_cast<const char*>(&value), sizeof value);
}

// Something can be read, or the other side has closed; writing: there is room for something.
bool IsReady(int descriptor, Milliseconds limit, bool writing = false) {
    fd_set ready;
    FD_ZERO(&ready);
    FD_SET(Of(descriptor), &ready);
    timeval time{};
    time.tv_sec = static_cast<decltype(time.tv_sec)>(limit.count() / 1000);
    time.tv_usec = static_cast<decltype(time.tv_usec)>(limit.count() % 1000 * 1000);
    return select(descriptor + 1, writing ? nullptr : &ready, writing ? &ready : nullptr, nullptr, &time) ==
           1;
}

sockaddr_in ThisComputer(std::uint16_t port, unsigned computer = 1) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(port);
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK - 1 + computer);
    return address;
}

int Connected(std::uint16_t port, unsigned computer) {
    const int descriptor = static_cast<int>(SystemSockets::New());
    const sockaddr_in own = ThisComputer(0, computer), address = ThisComputer(port);
    bind(Of(descriptor), reinterpret_cast<const sockaddr*>(&own), sizeof own);
    connect(Of(descriptor), reinterpret_cast<const sockaddr*>(&address), sizeof address);
    IsReady(descriptor, kForever, true);
    Set(descriptor, IPPROTO_TCP, TCP_NODELAY, 1);
    return descriptor;
}

int Listening() {
    int error = 0;
    return static_cast<int>(SocketCalls::Listen(0, error));
}

}  // namespace

RawConnection::RawConnection(RawConnection&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      ended_(other.ended_),
      received_(std::move(other.received_)) {}

RawConnection::~RawConnection() {
    if (descriptor_ >= 0) SystemSockets::Close(Of(descriptor_));
}

RawConnection RawConnection::To(std::uint16_t port, unsigned computer) {
    return RawConnection(Connected(port, computer));
}

bool RawConnection::Send(std::string_view bytes) const {
    while (!bytes.empty() && IsReady(descriptor_, kForever, true)) {
        const std::size_t sent = TrySend(bytes);
        if (sent == 0) return false;
        bytes.remove_prefix(sent);
    }
    return true;
}

std::size_t RawConnection::TrySend(std::string_view bytes) const {
    const long count = SystemSockets::Send(Of(descriptor_), bytes.data(), bytes.size());
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

std::string RawConnection::Line(std::chrono::milliseconds limit) {
    std::size_t end = 0;
    while ((end = received_.find("\r\n")) == std::string::npos) {
        if (!Receive(limit)) return ended_ ? "<end>" : "<nothing>";
    }
    const std::string line = received_.substr(0, end);
    received_.erase(0, end + 2);
    return line;
}

std::string RawConnection::Ask(const std::string& line) {
    Send(line + "\r\n");
    return Line();
}

std::string RawConnection::Rest(std::chrono::milliseconds limit) {
    while (Receive(limit)) {
    }
    return ended_ ? std::exchange(received_, {}) : "<not ended>";
}

void RawConnection::EndSending() const { shutdown(Of(descriptor_), SystemSockets::kEndOfSending); }

void RawConnection::Reset() {
    Set(descriptor_, SOL_SOCKET, SO_LINGER, linger{1, 0});
    SystemSockets::Close(Of(std::exchange(descriptor_, -1)));
}

bool RawConnection::Receive(std::chrono::milliseconds limit) {
    char buffer[65536];
    if (ended_ || !IsReady(descriptor_, limit)) return false;
    const long count = SystemSockets::Receive(Of(descriptor_), buffer, sizeof buffer);
    ended_ = count <= 0;
    if (!ended_) received_.append(buffer, static_cast<std::size_t>(count));
    return !ended_;
}

RawServer::RawServer(std::function<void(RawConnection&)> dialogue) : listener_(Listening()) {
    thread_ = std::thread([this, dialogue = std::move(dialogue)] {
        IsReady(listener_, kForever);
        RawConnection connection(static_cast<int>(SocketCalls::Accept(listener_).handle));
        dialogue(connection);
    });
}

RawServer::~RawServer() {
    // Somebody who says nothing, for the thread that may still be waiting.
    { const RawConnection nobody = RawConnection::To(Port()); }
    thread_.join();
    SystemSockets::Close(Of(listener_));
}

std::uint16_t RawServer::Port() const { return SocketCalls::LocalPort(listener_); }

std::uint16_t FreePort() {
    // Below those that the kernel gives to sockets by itself: one of these may be another's when it is used.
    static auto port = static_cast<std::uint16_t>(10'000 + std::random_device()() % 20'000);
    int error = 0;
    SocketCalls::Handle listener = SocketCalls::kNoHandle;
    while (listener == SocketCalls::kNoHandle) listener = SocketCalls::Listen(++port, error);
    SocketCalls::Close(listener);
    return port;
}
