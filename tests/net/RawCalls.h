#pragma once
// Plain blocking TCP sockets of this computer, as Linux and Windows have them.

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace RawCalls {

// From the address 127.0.0.N, N being the number of the computer. Throws when nobody listens there.
int Connect(std::uint16_t port, unsigned computer);

// On a free port, which it gives.
int Listen(std::uint16_t& port);
// Waits for a connection; -1 once StopAccepting has been called, from another thread.
int Accept(int listener);
void StopAccepting(int listener, std::uint16_t port);

// Something can be read, or the other side has closed.
bool IsReady(int descriptor, std::chrono::milliseconds limit);
// How many bytes; 0 or less at the end.
long Receive(int descriptor, char* buffer, std::size_t size);
// How many bytes; waits for room only if told to.
long Send(int descriptor, const char* bytes, std::size_t size, bool wait);

void EndSending(int descriptor);
// reset: so that the other side gets an error.
void Close(int descriptor, bool reset);

// Handles that the process has open.
int CountHandles();

}  // namespace RawCalls
