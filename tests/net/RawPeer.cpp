#include "tests/net/RawPeer.h"

#include <utility>

RawConnection::RawConnection(RawConnection&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      ended_(other.ended_),
      received_(std::move(other.received_)) {}

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
