#pragma once
// One connection, incoming or outgoing: its socket, and what it does when something happens to that. Whoever
// keeps it holds it by std::shared_ptr; it then lives at least until the event that it is in has been dealt
// with. For the thread that runs the events only.

#include <chrono>
#include <functional>
#include <utility>

#include "net/TcpSocket.h"

class clsSession : public SocketEvents {
  public:
    // Called when the session has come to its end by itself, with its socket closed.
    using Ended = std::function<void()>;

    // patience: how long it waits for the other side.
    clsSession(std::chrono::milliseconds patience, Ended ended)
        : patience_(patience), ended_(std::move(ended)) {}
    clsSession(const clsSession&) = delete;
    clsSession& operator=(const clsSession&) = delete;

    TcpSocket Socket{*this};

    bool IsConnected() const { return Socket.State() == TcpSocket::Connected; }

    // To be called when the connection stands.
    virtual void ConnectionEstablished() = 0;
    // To be called before the connection is closed from here.
    virtual void PrepareConnectionShutdown() {}

    void Socket_Close() override { End(); }
    void Socket_Error(std::int32_t, const std::wstring&) override { End(); }

  protected:
    void End() {
        Socket.Close();
        ended_();
    }
    std::chrono::milliseconds Patience() const { return patience_; }

  private:
    const std::chrono::milliseconds patience_;
    const Ended ended_;
};
