#include "net/SocketArray.h"

#include <limits>

std::shared_ptr<TcpSocket> SocketArray::Load() {
    constexpr std::int16_t kLargest = std::numeric_limits<std::int16_t>::max();
    if (sockets_.size() > static_cast<std::size_t>(kLargest)) return nullptr;
    do {
        last_ = last_ == kLargest ? std::int16_t{1} : static_cast<std::int16_t>(last_ + 1);
    } while (sockets_.contains(last_));
    return sockets_[last_] = Create(last_);
}

void SocketArray::Unload(const TcpSocket& socket) {
    const auto found = sockets_.find(socket.Index());
    if (found == sockets_.end() || found->second.get() != &socket) return;
    // Whoever is in the middle of one of its events holds the socket, too.
    found->second->Close();
    sockets_.erase(found);
}
