#pragma once
// The program's access to the network: the socket that listens, and the pool of live sessions in both
// directions. One per process, for the thread that runs the events only.

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "net/Protocol.h"
#include "net/TcpSocket.h"
#include "registry/KeepResult.h"

class NoteStore;
class clsOutgoing;
class clsSession;

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
    // elsewhere. What it could not keep is an error for the sender, and the note is not taken in.
    std::function<KeepResult(const Note&)> KeepLongNote;

    // Asked once for each connection before anything is said to it: false closes it. The address is the
    // dotted one of the computer that connects. Empty: everybody may.
    std::function<bool(const std::string& address)> MayConnect;

    // Listens, if it does not already. False while the port is taken; the program does without receiving
    // then.
    bool Listen();
    std::uint16_t LocalPort() const { return sckSend.LocalPort(); }

    // Ends listening and every session. Unfinished notes are dropped.
    void Stop();

    // A session for sending, still without a connection.
    std::shared_ptr<clsOutgoing> CreateOutgoing();

    // Connects the session to the host, a name or a dotted address, and lets it read the greeting; runs
    // events meanwhile. Its socket's state tells afterwards whether that worked.
    void Connect(const std::shared_ptr<clsOutgoing>& session, const std::wstring& host);

    // Ends a running Connect, and whatever else waits for a session that was aborted.
    void CancelConnect();

    // Lets the session prepare, closes its socket and takes it out of the pool.
    void Shutdown(const std::shared_ptr<clsSession>& session);

    std::size_t CountSessions() const { return pool_.size(); }

  private:
    void ConnectionRequest() override;
    void RemoveClosed();
    KeepResult TakeIn(const Note& received);

    NoteStore& store_;
    const Options options_;
    TcpSocket sckSend{*this};                        // listens
    std::vector<std::shared_ptr<clsSession>> pool_;  // in the order of addition
    bool cancelled_ = false;
};
