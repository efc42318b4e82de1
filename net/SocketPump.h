#pragma once
// Tells sockets when they can go on. Sockets get a turn of a few milliseconds between other events of the
// program, shared fairly, so that no crowd of them keeps a window waiting. Sleeps while nothing happens.

#include <functional>

#include "net/SocketCalls.h"

namespace SocketPump {

// A connection that is gone is both readable and writable.
struct Readiness {
    bool readable = false;
    bool writable = false;
    bool again = false;  // was asked for
};
using Ready = std::function<void(const Readiness&)>;

// Names a watched socket; 0 is none. Handles are used anew by the system, these numbers never.
using Watched = std::uint64_t;

Watched Watch(SocketCalls::Handle handle, Ready ready);

// From now on the callback comes for these, at first for none.
void Want(Watched watched, bool read, bool write);

// Calls back once more when other events have had their turn.
void Again(Watched watched);

// To be called before the handle is closed. No call comes afterwards.
void Forget(Watched watched);

}  // namespace SocketPump
