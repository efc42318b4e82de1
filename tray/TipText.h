#pragma once
// Tips for Windows before 11, which takes "&" in a tip for the mark of a key.

#include <string>

// The tip with every "&" written so that such a Windows shows one, cut to at most that many characters, but
// not inside what stands for one "&".
std::wstring WithMarkedAmpersands(const std::wstring& tip, std::size_t most);
