#pragma once
// The program's access to the network: the socket that listens, and the pool of live sessions in both
// directions. One per process, for the thread that runs the events only.

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "net/ConnectionLimits.h"
#include "net/FloodGuard.h"
#include "net/Protocol.h"
#include "net/TcpSocket.h"
#include "net/clsIncoming.h"
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
        std::chrono::seconds silence{kSilenceSeconds};                  // see ConnectionLimits
    };

    // The store must outlive it. It does not listen yet.
    NetworkAccess(NoteStore& store, const Options& options);
    explicit NetworkAccess(NoteStore& store);
    ~NetworkAccess() override;
    NetworkAccess(const NetworkAccess&) = delete;
    NetworkAccess& operator=(const NetworkAccess&) = delete;

    // Asked for each connection before anything is said to it, and again by AskAgain. The answer comes within
    // the call or later; false closes the connection. The address is the dotted one of the computer that
    // connects. Empty: everybody may.
    using Answer = std::function<void(bool may)>;
    std::function<void(const std::string& address, Answer answer)> MayConnect;

    // Who may connect has changed: asks for each connection that there is.
    void AskAgain();

    // Whether Listen has an effect; true at first. False ends listening and every connection from outside.
    void ListensAtAll(bool listens);

    // Listens, if it does not already. False while the port is taken, or when it is not to listen at all; the
    // program does without receiving then.
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

    // Called when other computers flood this one with notes, if set: the user is to be asked. Nobody waits
    // for the answer, which comes by AnswerFlood; until then no more of those notes are taken.
    std::function<void(const FloodGuard::Flood& flood)> OnFlood;
    // The user's answer to the last OnFlood. Deleted puts the notes of the flood that nobody has touched into
    // the bin; the result tells when that failed, and then they are all still there and the answer is Refuse.
    KeepResult AnswerFlood(FloodGuard::Answer answer);

    std::size_t CountSessions() const { return outgoing_.size() + incoming_.size(); }

  private:
    // A connection of which nobody has said yet whether it may stay. It closes with the last that has it.
    class Undecided;

    void ConnectionRequest() override;
    void Admit(const std::shared_ptr<Undecided>& request);
    void RemoveClosed();
    void CloseForRoom(ConnectionLimits::Number number);
    void Heard(ConnectionLimits::Number number, std::size_t heldBytes, bool complete);
    std::optional<clsIncoming::Refusal> TakeIn(const Note& received, const std::string& address);
    void AskAboutFlood();
    KeepResult DeleteFlood();

    NoteStore& store_;
    const Options options_;
    TcpSocket sckSend{*this};  // listens
    ConnectionLimits limits_{options_.silence};
    // The pool of sessions, each in the order of addition, and who is to become one.
    std::vector<std::shared_ptr<clsOutgoing>> outgoing_;
    std::vector<std::shared_ptr<clsIncoming>> incoming_;
    std::vector<std::shared_ptr<Undecided>> undecided_;
    FloodGuard floodGuard_;
    FloodGuard::Flood flood_;  // of which the user was asked last
    bool listensAtAll_ = true;
    bool cancelled_ = false;
};
