#pragma once
// A connection to another computer: the sender's half of the dialogue. Every step waits for the other side
// and runs events meanwhile; what fails is told to the caller, once for each note that it costs.

#include <string>
#include <vector>

#include "net/LineBuffer.h"
#include "net/Protocol.h"
#include "net/clsSession.h"

class clsOutgoing : public clsSession {
  public:
    using clsSession::clsSession;

    // Why a note was not sent.
    struct Failure {
        enum Kind { Refused, NoAnswer, Unexpected };
        const Note& note;
        Kind kind;
        std::wstring answer;  // what the receiver says of it; any text of any length, or none
    };

    // Sends the notes one after the other; does nothing when there is no connection. For a note that the
    // receiver does not take, `failed` is called, and the next one is tried. To a receiver of another version
    // nothing is sent, but all notes count as sent.
    void Send(const std::vector<Note>& NotesToSend, const std::function<void(const Failure&)>& failed);

    // Ends what is running as soon as possible; nothing fails any more.
    void Abort();

    // Reads the greeting.
    void ConnectionEstablished() override;
    // Sends QUIT and waits for no answer.
    void PrepareConnectionShutdown() override;

    // The protocol version of the other side, empty while it is not known.
    const std::wstring& GetRemoteHostProgramVersion() const { return remoteVersion_; }
    // Else nothing is sent to it.
    bool SpeaksOurVersion() const { return remoteVersion_ == kProtocolVersion; }
    std::wstring GetNumberSentNotes() const { return std::to_wstring(sentNotes_); }

    void Socket_DataArrival(std::int32_t bytes) override;

  private:
    bool SendNote(const Note& note, const std::function<void(const Failure&)>& failed);
    void SendLine(const std::wstring& line);
    std::wstring ReadLine();
    void LetOthersRun();

    LineBuffer received_{kLongestReply};
    std::wstring remoteVersion_;
    std::int32_t sentNotes_ = 0;
    bool aborted_ = false;
    std::chrono::steady_clock::time_point lastPause_;
};
