#pragma once
// Whether the resident program takes notes over the network, and from whom.

#include <wx/timer.h>

#include <chrono>
#include <functional>

#include "model/ReceiveSetting.h"
#include "net/KnownComputers.h"

class NetworkAccess;

class Receiving {
  public:
    // Nobody is listened to yet. The network outlives this object.
    // onChange: called when State may have changed.
    // pause: between attempts to get the port while another program has it. Nothing tells that it has become
    // free; to try costs a hundredth of a millisecond.
    Receiving(NetworkAccess& network, std::function<void()> onChange,
              std::chrono::milliseconds pause = std::chrono::seconds(5));

    // Takes effect at once, also for connections that exist.
    void From(ReceiveFrom from);

    // The address book has changed, so a computer may have become unknown.
    void BookChanged();

    struct State {
        ReceiveFrom from = ReceiveFrom::All;
        bool portTaken = false;  // another program listens where notes would come in
    };
    const State& Now() const { return state_; }

  private:
    void Listen();
    void MayConnect(const std::string& address, const KnownComputers::Answer& answer);

    NetworkAccess& network_;
    const std::function<void()> onChange_;
    const std::chrono::milliseconds pause_;
    State state_;
    KnownComputers known_;
    wxTimer again_;  // runs while the port is taken
};
