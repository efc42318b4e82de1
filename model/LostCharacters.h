#pragma once
// Characters that do not leave the program: files, the network protocol and, on Windows, mail carry those of
// the ANSI code page (base/Text.h, ToAnsi) and '?' for all others.

#include <string>
#include <string_view>
#include <vector>

bool LosesCharacters(std::wstring_view text);

// The question whether notes of these texts, at least one, may lose characters. It names the first few of
// them. doing: what is about to be done with the notes, as in "die sich nicht exportieren lassen".
std::wstring LossQuestion(const std::vector<std::wstring>& texts, std::wstring_view doing);
