#pragma once
// A TCP socket as the sessions see it: properties, methods and events, and the states that go with them. No
// call waits; what happens is told by events, which come from the program's event loop, and from no other
// thread. Nothing here may be called from another one either. What is sent goes out in the order given, each
// call in one piece where the kernel has room for it.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "net/SocketPump.h"

class NameLookup;
class TcpSocket;

// Gets the events of its sockets. Within such a call the socket may be closed and the receiver given up: one
// that is held by std::shared_ptr lives until the call has returned. While the program quits, nothing is told
// but ConnectionRequest.
class SocketEvents : public std::enable_shared_from_this<SocketEvents> {
  public:
    virtual ~SocketEvents() = default;
    // At least one connection waits at a listening socket, to be taken by NextRequest.
    virtual void ConnectionRequest() {}
    // bytes: how many wait to be taken by GetData.
    virtual void Socket_DataArrival(std::int32_t) {}
    virtual void Socket_SendComplete() {}
    // The other side has closed the connection; everything it had sent before has been told.
    virtual void Socket_Close() {}
    // The connection could not be made or has broken. The socket's state is 9.
    virtual void Socket_Error(std::int32_t, const std::wstring&) {}
};

class TcpSocket {
  public:
    enum SocketState : std::int16_t { Closed = 0, Listening = 2, Connecting = 6, Connected = 7, Failed = 9 };

    // The receiver must outlive the socket; usually it owns it.
    explicit TcpSocket(SocketEvents& receiver);
    ~TcpSocket();  // closes it
    TcpSocket(const TcpSocket&) = delete;
    TcpSocket& operator=(const TcpSocket&) = delete;

    SocketState State() const { return state_; }
    std::uint16_t LocalPort() const;
    void LocalPort(std::uint16_t port) { localPort_ = port; }
    void RemotePort(std::uint16_t port) { remotePort_ = port; }

    // Listens on LocalPort. State 9 when that is taken; no event comes.
    void Listen();

    // Looks the host up, a name or a dotted address, and connects to its RemotePort. The state becomes 7, or
    // Socket_Error comes; whoever waits is woken.
    void Connect(const std::wstring& host);

    // Takes over a connection that NextRequest gave; connected at once.
    void Accept(SocketCalls::Handle request);

    // Hands bytes over. Socket_SendComplete comes as soon as all of them are with the kernel, possibly within
    // the call. Without effect unless connected.
    void SendData(const std::string& bytes);

    // Takes everything that has arrived.
    std::string GetData();

    // To be called within Socket_DataArrival by a receiver that needs more time for what it has got: the
    // event comes again after other events, and until then nothing more is read.
    void AskAgain();

    // Sleeps for a millisecond at most and lets the events of what has arrived come within the call. For an
    // answer that is expected at once this is much faster than a loop of events.
    void LookForAMoment();

    // Closes without an event. What was handed over but is not with the kernel yet is lost.
    void Close();

    // Of a listening socket: the next connection that waits; without a handle when there is none.
    SocketCalls::Request NextRequest();

    // Something of what was handed over is not with the kernel yet.
    bool SendPending() const { return !out_.empty(); }

    // The memory that what was read and what is not sent yet takes.
    std::size_t HeldBytes() const { return in_.capacity() + out_.capacity(); }

  private:
    template <class... Parameters, class... Arguments>
    void Tell(void (SocketEvents::*event)(Parameters...), const Arguments&... arguments);
    void Open(SocketCalls::Handle handle, SocketState state);
    void OnReady(const SocketPump::Readiness& readiness);
    void BeginConnect(const std::string& address);
    void Read();
    void Flush();
    void Finish();
    void Fail(int error);
    void UpdateWants();

    SocketEvents& receiver_;
    SocketState state_ = Closed;
    std::uint16_t localPort_ = 0, remotePort_ = 0;
    SocketCalls::Handle handle_ = SocketCalls::kNoHandle;
    SocketPump::Watched watched_ = 0;
    std::unique_ptr<NameLookup> lookup_;
    std::string in_, out_;
    std::size_t sent_ = 0;  // of out_
    bool held_ = false;     // the receiver was not ready for more
    bool ended_ = false;    // the other side sends no more
    int error_ = 0;         // met while sending; told when the receiver has had what arrived before
    bool wantsRead_ = false, wantsWrite_ = false;
};
