#pragma once
// Tells sockets when they can go on. Sockets get a turn of a few milliseconds between other events of the
// program, shared fairly, so that no crowd of them keeps a window waiting. Sleeps while nothing happens. For
// the thread that runs the events only.

#include "net/SocketReadiness.h"

namespace SocketPump {

Watched Watch(SocketCalls::Handle handle, Ready ready);

// From now on the callback comes for these, at first for none.
void Want(Watched watched, bool read, bool write);

// Calls back once more when other events have had their turn.
void Again(Watched watched);

// To be called before the handle is closed. No call comes afterwards.
void Forget(Watched watched);

}  // namespace SocketPump
