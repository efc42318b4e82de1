#pragma once
// A connection from another computer: the receiver's half of the dialogue. Notes that arrive complete go into
// the store; nothing that happens here is shown to the user.

#include <wx/timer.h>

#include <functional>

#include "net/Receiver.h"
#include "net/clsSession.h"

class clsIncoming : public clsSession {
  public:
    // Takes a finished note in. What it throws is answered to the sender.
    using TakeIn = std::function<void(const NoteContent&)>;

    clsIncoming(SocketArray& sockets, std::chrono::milliseconds patience, TakeIn takeIn)
        : clsSession(sockets, patience), takeIn_(std::move(takeIn)) {}

    void ConnectionEstablished() override;
    void Socket_DataArrival(std::int32_t bytes) override;
    void Socket_Close() override { receiver_.DropNote(); }
    void Socket_Error(std::int32_t, const std::wstring&) override { receiver_.DropNote(); }
    void Socket_SendComplete() override;

  private:
    void CarryOut(const Receiver::Step& step);
    void Leave();

    TakeIn takeIn_;
    Receiver receiver_;
    bool leaving_ = false;  // after QUIT
    wxTimer leavingLimit_;
};
