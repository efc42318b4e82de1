#pragma once
// One connection, incoming or outgoing: its socket, and what happens to it. The events of the socket come by
// way of the network access, which knows whose socket it is.

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "net/SocketArray.h"

class clsSession {
  public:
    // Loads a socket of its own from an array that lives longer. patience: how long it waits for the other
    // side.
    clsSession(SocketArray& sockets, std::chrono::milliseconds patience)
        : Socket(sockets.Load()), sockets_(sockets), patience_(patience) {}
    virtual ~clsSession() { UnloadSocket(); }
    clsSession(const clsSession&) = delete;
    clsSession& operator=(const clsSession&) = delete;

    // Null once it was given up.
    std::shared_ptr<TcpSocket> Socket;

    bool IsConnected() const { return Socket && Socket->State() == TcpSocket::Connected; }

    // The connection stands.
    virtual void ConnectionEstablished() = 0;
    // The connection is about to be closed from here.
    virtual void PrepareConnectionShutdown() {}

    virtual void Socket_DataArrival(std::int32_t bytes) = 0;
    virtual void Socket_Connect() {}
    virtual void Socket_Close() {}
    virtual void Socket_Error(std::int32_t, const std::wstring&) {}
    virtual void Socket_SendComplete() {}
    virtual void Socket_SendProgress(std::int32_t, std::int32_t) {}

  protected:
    void UnloadSocket() {
        if (Socket) sockets_.Unload(*Socket);
        Socket.reset();
    }
    std::chrono::milliseconds Patience() const { return patience_; }

  private:
    SocketArray& sockets_;
    const std::chrono::milliseconds patience_;
};
