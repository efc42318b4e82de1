#pragma once
// A connection to another computer: the sender's half of the dialogue. Every step waits for the other side
// and runs events meanwhile; a failure is shown to the user once for each note that it costs.

#include <cstdint>
#include <string>
#include <vector>

#include "net/LineBuffer.h"
#include "net/Protocol.h"
#include "net/clsSession.h"

class clsOutgoing : public clsSession {
  public:
    clsOutgoing(SocketArray& sockets, std::chrono::milliseconds patience) : clsSession(sockets, patience) {}

    // Sends the notes one after the other; does nothing when there is no connection. A note that the receiver
    // refuses is reported, and the next one is tried. To a receiver of another version nothing is sent, but
    // all notes count as sent.
    void Send(const std::vector<NoteContent>& NotesToSend);

    // Ends what is running as soon as possible, without any message.
    void Abort();

    // Reads the greeting.
    void ConnectionEstablished() override;
    // Sends QUIT and waits for no answer.
    void PrepareConnectionShutdown() override;

    // The protocol version of the other side, empty while it is not known.
    const std::wstring& GetRemoteHostProgramVersion() const { return remoteVersion_; }
    std::wstring GetNumberSentNotes() const { return std::to_wstring(sentNotes_); }

    void Socket_DataArrival(std::int32_t bytes) override;
    void Socket_SendComplete() override { sendPending_ = false; }

  private:
    bool SendNote(const NoteContent& note);
    void SendLine(const std::wstring& line);
    std::wstring ReadLine();
    bool CheckReply(const std::wstring& reply, const NoteContent& note) const;
    void LetOthersRun();

    LineBuffer received_{kLongestLine};
    std::wstring remoteVersion_;
    std::int32_t sentNotes_ = 0;
    bool sendPending_ = false;
    bool aborted_ = false;
    std::chrono::steady_clock::time_point lastPause_;
};
