#pragma once
// A connection from another computer: the receiver's half of the dialogue. Notes that arrive complete are
// handed on; one that is unfinished when the connection ends is dropped. Nothing is shown to the user here:
// what goes wrong is answered to the sender.

#include <wx/timer.h>

#include "net/Receiver.h"
#include "net/clsSession.h"
#include "registry/KeepResult.h"

class clsIncoming : public clsSession {
  public:
    // Takes a finished note in. The sender gets an error for one that was not kept.
    using TakeIn = std::function<KeepResult(const Note&)>;

    // address: the other computer's, dotted.
    clsIncoming(std::string address, std::chrono::milliseconds patience, Ended ended, TakeIn takeIn)
        : clsSession(patience, std::move(ended)), Address(std::move(address)), takeIn_(std::move(takeIn)) {}

    const std::string Address;

    void ConnectionEstablished() override;
    void Socket_DataArrival(std::int32_t bytes) override;
    void Socket_SendComplete() override;

  private:
    void CarryOut(const Receiver::Step& step);

    const TakeIn takeIn_;
    Receiver receiver_;
    bool leaving_ = false;  // after QUIT
    wxTimer leavingLimit_;
};
