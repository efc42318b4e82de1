#pragma once
// The program's access to the network: the listening socket, the pool of live sessions in both directions,
// and the way from a socket's event to the session that owns it. One per process.

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "net/Protocol.h"
#include "net/SocketArray.h"
#include "net/clsSession.h"

class NoteStore;
class clsOutgoing;
class frmNote;

class NetworkAccess : private SocketEvents {
  public:
    struct Options {
        std::uint16_t localPort = kNotePort;                            // listened on; 0 takes any free one
        std::uint16_t remotePort = kNotePort;                           // connected to
        std::chrono::milliseconds patience = std::chrono::seconds(15);  // with the other side
    };

    // The store must outlive it. It does not listen yet.
    NetworkAccess(NoteStore& store, const Options& options);
    explicit NetworkAccess(NoteStore& store);
    ~NetworkAccess() override;
    NetworkAccess(const NetworkAccess&) = delete;
    NetworkAccess& operator=(const NetworkAccess&) = delete;

    // Called with a received note whose text the registry will not give back, so that somebody keeps it
    // elsewhere. It is in the store already.
    std::function<void(const frmNote&)> KeepLongNote;

    // Listens, if it does not already. False while the port is taken; the program does without receiving
    // then.
    bool Listen();
    std::uint16_t LocalPort() { return sckSend.Listener().LocalPort(); }

    // Ends listening and every session. Unfinished notes are dropped.
    void Stop();

    // A session for sending, still without a connection.
    std::shared_ptr<clsOutgoing> CreateOutgoing();

    // Connects the session to the host, a name or a dotted address, and lets it read the greeting; runs
    // events meanwhile. Its socket's state tells afterwards whether that worked.
    void Connect(const std::shared_ptr<clsSession>& session, const std::wstring& host);

    // Ends a running Connect, and whatever else waits for a session that was aborted.
    void CancelConnect();
    bool IsCancelled() const { return cancelled_; }

    // The session that owns the socket, or null.
    std::shared_ptr<clsSession> FindSession(const TcpSocket& socket) const;

    // Lets the session prepare, closes its socket and takes it out of the pool.
    void Shutdown(const std::shared_ptr<clsSession>& session);

    std::size_t CountSessions() const { return pool_.size(); }
    std::size_t CountSockets() const { return sckSend.Count(); }

  private:
    void ConnectionRequest(TcpSocket& listener) override;
    void Connect(TcpSocket& socket) override;
    void DataArrival(TcpSocket& socket, std::int32_t bytes) override;
    void SendComplete(TcpSocket& socket) override;
    void SendProgress(TcpSocket& socket, std::int32_t sent, std::int32_t remaining) override;
    void Close(TcpSocket& socket) override;
    void Error(TcpSocket& socket, std::int32_t number, const std::wstring& description) override;

    template <class Call>
    void Route(TcpSocket& socket, Call call, bool last = false);
    void Remove(const clsSession* session);
    void TakeIn(const NoteContent& content);

    NoteStore& store_;
    const Options options_;
    SocketArray sckSend;
    std::vector<std::shared_ptr<clsSession>> pool_;  // in the order of addition
    bool cancelled_ = false;
};
