#include "tests/net/RawPeer.h"

#include <utility>

#include "tests/net/RawCalls.h"

RawConnection::RawConnection(RawConnection&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      ended_(other.ended_),
      received_(std::move(other.received_)) {}

RawConnection::~RawConnection() {
    if (descriptor_ >= 0) RawCalls::Close(descriptor_, false);
}

RawConnection RawConnection::To(std::uint16_t port, unsigned computer) {
    return RawConnection(RawCalls::Connect(port, computer));
}

bool RawConnection::Send(const std::string& bytes) const {
    for (std::size_t sent = 0; sent < bytes.size();) {
        const long count = RawCalls::Send(descriptor_, bytes.data() + sent, bytes.size() - sent, true);
        if (count <= 0) return false;
        sent += static_cast<std::size_t>(count);
    }
    return true;
}

std::size_t RawConnection::TrySend(const std::string& bytes) const {
    const long count = RawCalls::Send(descriptor_, bytes.data(), bytes.size(), false);
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

bool RawConnection::Discard() const {
    char buffer[65536];
    while (RawCalls::IsReady(descriptor_, std::chrono::milliseconds(0))) {
        if (RawCalls::Receive(descriptor_, buffer, sizeof buffer) <= 0) return false;
    }
    return true;
}

void RawConnection::EndSending() const { RawCalls::EndSending(descriptor_); }

void RawConnection::Reset() { RawCalls::Close(std::exchange(descriptor_, -1), true); }

bool RawConnection::Receive(std::chrono::milliseconds limit) {
    char buffer[65536];
    if (ended_ || !RawCalls::IsReady(descriptor_, limit)) return false;
    const long count = RawCalls::Receive(descriptor_, buffer, sizeof buffer);
    ended_ = count <= 0;
    if (!ended_) received_.append(buffer, static_cast<std::size_t>(count));
    return !ended_;
}

RawServer::RawServer(std::function<void(RawConnection&)> dialogue) : listener_(RawCalls::Listen(port_)) {
    thread_ = std::thread([this, dialogue = std::move(dialogue)] {
        const int accepted = RawCalls::Accept(listener_);
        if (accepted < 0) return;
        RawConnection connection(accepted);
        dialogue(connection);
    });
}

RawServer::~RawServer() {
    RawCalls::StopAccepting(listener_, port_);
    thread_.join();
    RawCalls::Close(listener_, false);
}

std::uint16_t FreePort() {
    std::uint16_t port = 0;
    RawCalls::Close(RawCalls::Listen(port), false);
    return port;
}
