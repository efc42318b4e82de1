#pragma once
// A TCP socket as the sessions see it: properties, methods and events, and the states that go with them.
// Everything it does happens in the program's event loop; no call waits. What is sent goes out in the order
// given, each call in one piece where the system allows.

#include <cstdint>
#include <memory>
#include <string>

#include "net/SocketPump.h"

class NameLookup;
class TcpSocket;

// What happens to sockets. Within such a call the socket may be closed and given up.
class SocketEvents {
  public:
    virtual ~SocketEvents() = default;
    virtual void ConnectionRequest(TcpSocket& socket) = 0;
    virtual void Connect(TcpSocket& socket) = 0;
    // bytes: how many wait to be taken by GetData.
    virtual void DataArrival(TcpSocket& socket, std::int32_t bytes) = 0;
    virtual void SendComplete(TcpSocket& socket) = 0;
    virtual void SendProgress(TcpSocket& socket, std::int32_t sent, std::int32_t remaining) = 0;
    // The other side has closed the connection; everything it had sent before has been told.
    virtual void Close(TcpSocket& socket) = 0;
    virtual void Error(TcpSocket& socket, std::int32_t number, const std::wstring& description) = 0;
};

class TcpSocket : public std::enable_shared_from_this<TcpSocket> {
  public:
    enum SocketState : std::int16_t { Closed = 0, Listening = 2, Connecting = 6, Connected = 7, Failed = 9 };

    // events must outlive the socket or its last Close.
    TcpSocket(std::int16_t index, SocketEvents& events);
    ~TcpSocket();
    TcpSocket(const TcpSocket&) = delete;
    TcpSocket& operator=(const TcpSocket&) = delete;

    std::int16_t Index() const { return index_; }
    SocketState State() const { return state_; }
    std::uint16_t LocalPort() const;
    void LocalPort(std::uint16_t port) { localPort_ = port; }
    std::uint16_t RemotePort() const { return remotePort_; }
    void RemotePort(std::uint16_t port) { remotePort_ = port; }

    // Listens on LocalPort. State 9 when that is taken; no event comes.
    void Listen();

    // Looks the host up and connects to its RemotePort. The event Connect or Error follows.
    void Connect(const std::wstring& host);

    // Takes over a connection that the system has accepted; connected at once.
    void Accept(SocketCalls::Handle request);

    // Hands bytes over. SendComplete comes as soon as all of them are with the system, possibly within the
    // call. Without effect unless connected.
    void SendData(const std::string& bytes);

    // Takes everything that has arrived.
    std::string GetData();

    // To be called within DataArrival by an owner that needs more time for what it has got: DataArrival comes
    // again after other events, and until then nothing more is read.
    void AskAgain();

    // Sleeps for a millisecond at most and lets the events of what has arrived come within the call. For an
    // answer that is expected at once this is much faster than a loop of events.
    void LookForAMoment();

    // Closes without an event. What was handed over but is not with the system yet is lost.
    void Close();

    // Of a listening socket: the next connection that waits, or kNoHandle.
    SocketCalls::Handle NextRequest();

    bool SendPending() const { return !out_.empty(); }

  private:
    void Open(SocketCalls::Handle handle, SocketState state);
    void OnReady(const SocketPump::Readiness& readiness);
    void BeginConnect(const std::string& address);
    void Read();
    void Flush();
    void Finish();
    void Fail(int error);
    void UpdateWants();

    const std::int16_t index_;
    SocketEvents& events_;
    SocketState state_ = Closed;
    std::uint16_t localPort_ = 0, remotePort_ = 0;
    SocketCalls::Handle handle_ = SocketCalls::kNoHandle;
    SocketPump::Watched watched_ = 0;
    std::unique_ptr<NameLookup> lookup_;
    std::string in_, out_;
    std::size_t sent_ = 0;  // of out_
    bool held_ = false;     // the owner was not ready for more
    bool ended_ = false;    // the other side sends no more
    int error_ = 0;         // met while sending; told when the owner has had what arrived before
    bool wantsRead_ = false, wantsWrite_ = false;
};
