#pragma once
// Comparing names without regard to case, the same on every system and in every locale.

#include <string>
#include <string_view>

// The text with every letter replaced by its capital, where that is one character ("ß" stays). Letters
// outside ASCII never become ASCII ones, and those beyond U+FFFF stay as they are.
std::wstring InCapitals(std::wstring_view text);

// The same for UTF-8; bytes that are part of no valid sequence become U+FFFD.
std::string Utf8InCapitals(std::string_view bytes);
