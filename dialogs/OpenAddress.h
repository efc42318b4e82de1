#pragma once
// Handing an address to the desktop.

#include <string>

// Opens a file or address with its default program: one argument, no shell. False when there is none. May run
// events for up to a second, until it is known whether somebody opens it.
bool OpenAddress(const std::wstring& address);
