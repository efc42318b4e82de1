#pragma once
// How the pump learns from Linux or Windows which sockets are ready. Made for each platform; knows
// nothing of who is called for a socket, nor in which order.

#include <cstdint>
#include <deque>
#include <functional>
#include <memory>

#include "net/SocketCalls.h"

namespace SocketPump {

// A connection that is gone is both readable and writable.
struct Readiness {
    bool readable = false;
    bool writable = false;
    bool again = false;  // was asked for
};
using Ready = std::function<void(const Readiness&)>;

// Names a watched socket; 0 is none. The kernel uses handles anew, these numbers never come again.
using Watched = std::uint64_t;

struct Entry {
    SocketCalls::Handle handle = SocketCalls::kNoHandle;
    std::shared_ptr<Ready> ready;
    bool read = false, write = false;  // wanted

    bool Wanted() const { return read || write; }
};

struct Event {
    Watched watched = 0;
    Readiness readiness;
};

// What the pump has for this: serves sockets until the turn is over, to be called when one may be ready and
// when a turn was asked for; and the socket of a number, null when it is not watched any more.
void RunTurn();
const Entry* Find(Watched watched);

namespace System {

void Add(Watched watched, const Entry& entry);
// What is wanted has changed; `before` tells whether anything was.
void Want(Watched watched, const Entry& entry, bool before);
void Remove(Watched watched, const Entry& entry);

// Appends sockets that are ready now; one whose readiness is empty counts as looked at. None when there is
// nothing more to look at.
void Collect(std::deque<Event>& events);

// The socket was called and may still be ready.
void Served(Watched watched, const Entry& entry);

// Lets RunTurn be called once when other events have had their turn.
void AskForTurn();

}  // namespace System

}  // namespace SocketPump
