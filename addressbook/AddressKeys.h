#pragma once
// Which characters may be typed into a box for network names and addresses.

// Letters and digits of ASCII, full stop, hyphen and backspace.
bool IsAddressKey(wchar_t character);
