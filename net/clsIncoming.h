#pragma once
// A connection from another computer: the receiver's half of the dialogue. Notes that arrive complete are
// handed on; one that is unfinished when the connection ends is dropped. Nothing is shown to the user here:
// what goes wrong is answered to the sender.

#include <wx/timer.h>

#include <optional>
#include <string>

#include "net/ConnectionLimits.h"
#include "net/Receiver.h"
#include "net/clsSession.h"

class clsIncoming : public clsSession {
  public:
    // Takes a finished note in. The sender gets the error of one that was not taken.
    struct Refusal {
        int number;
        std::wstring description;
    };
    using TakeIn = std::function<std::optional<Refusal>(const Note&)>;

    // Hears of every arrival: the memory that the session takes now, and whether a line was completed. May
    // close the session.
    using Heard = std::function<void(std::size_t heldBytes, bool complete)>;

    // The other computer: its dotted address, and the number of its connection.
    struct Peer {
        std::string address;
        ConnectionLimits::Number number;
    };

    clsIncoming(Peer peer, std::chrono::milliseconds patience, Ended ended, TakeIn takeIn, Heard heard)
        : clsSession(patience, std::move(ended)),
          OtherSide(std::move(peer)),
          takeIn_(std::move(takeIn)),
          heard_(std::move(heard)) {}

    const Peer OtherSide;

    // The memory that the other side makes it take.
    std::size_t HeldBytes() const { return receiver_.HeldBytes() + Socket.HeldBytes(); }

    void ConnectionEstablished() override;
    void Socket_DataArrival(std::int32_t bytes) override;
    void Socket_SendComplete() override;

  private:
    // False when there is more to carry out.
    bool CarryOutLines(bool& complete);
    void CarryOut(const Receiver::Step& step);

    const TakeIn takeIn_;
    const Heard heard_;
    Receiver receiver_;
    bool leaving_ = false;  // after QUIT
    wxTimer leavingLimit_;
};
