#pragma once
// The clipboard, as far as it holds text.

#include <optional>
#include <string>

// Puts a text into the clipboard, its line breaks as the platform's programs have them. False when the
// clipboard cannot be had.
bool CopyText(const std::wstring& text);

// The text that lies there, its line breaks as whoever put it there has them; nothing when there is none.
// Lets events run until the program that offers the text has handed it over.
std::optional<std::wstring> ClipboardText();
