#pragma once
#include <string>

// Puts a text into the clipboard, its line breaks as the platform's programs have them. False when the
// clipboard cannot be had.
bool CopyText(const std::wstring& text);
