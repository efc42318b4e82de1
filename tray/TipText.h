#pragma once
// Tips of icons on systems that take "&" for the mark of a key.

#include <string>

// The tip with as many "&" as make such a system show each one, cut to at most that many characters. Those of
// one "&" stay together.
std::wstring WithMarkedAmpersands(const std::wstring& tip, std::size_t most);
