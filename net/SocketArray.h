#pragma once
// The program's sockets by their index. Element 0 listens; every other socket gets an index that none had
// before while this one may still be asked about it.

#include <cstdint>
#include <map>
#include <memory>

#include "net/TcpSocket.h"

class SocketArray {
  public:
    // events must outlive the sockets' use.
    explicit SocketArray(SocketEvents& events) : events_(events) { sockets_[0] = Create(0); }

    TcpSocket& Listener() { return *sockets_.at(0); }

    // A new closed socket; null when all 32767 indexes are in use.
    std::shared_ptr<TcpSocket> Load();

    // Closes the socket and gives it up.
    void Unload(const TcpSocket& socket);

    // Number of elements, the listener included.
    std::size_t Count() const { return sockets_.size(); }

  private:
    std::shared_ptr<TcpSocket> Create(std::int16_t index) {
        return std::make_shared<TcpSocket>(index, events_);
    }

    SocketEvents& events_;
    std::map<std::int16_t, std::shared_ptr<TcpSocket>> sockets_;
    std::int16_t last_ = 0;
};
