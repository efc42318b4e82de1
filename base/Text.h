#pragma once
// Text inside the program is std::wstring; bytes exist only at its borders. These are the two doors: UTF-8
// for what the operating system and the local store exchange with us, the ANSI code page for what leaves the
// program as files or over the network.

#include <string>
#include <string_view>

// UTF-8 of a text. Surrogates that do not pair become U+FFFD.
std::string ToUtf8(std::wstring_view text);

// The text of UTF-8 bytes. Every byte that is part of no valid sequence becomes one U+FFFD.
std::wstring FromUtf8(std::string_view bytes);

// The text in the ANSI code page, one byte a character (on Linux Windows-1252); '?' for what it lacks.
std::string ToAnsi(std::wstring_view text);

// The text of bytes in the ANSI code page. Every byte has a character, so FromAnsi and ToAnsi lose no byte.
std::wstring FromAnsi(std::string_view bytes);

// Every line break (CR LF, CR, LF) as CR LF, the form in which notes hold theirs.
std::wstring WithCrLf(std::wstring_view text);

// A text from elsewhere as a note holds it: line breaks as CR LF, without those at its end, a NUL as a blank.
std::wstring AsNoteText(std::wstring text);

// The text in one line: CR, LF and TAB become one blank each, and an LF directly behind such a character goes
// with it. Nothing is trimmed.
std::wstring Flattened(std::wstring_view text);

// An edit that would make a text longer than it may be, cut so that it fits: the longest beginning of what
// was inserted between `before` and `after` that keeps the UTF-8 length, line breaks counted as CR LF, within
// `limit` bytes. A text that was too long already may be edited as long as it does not grow.
// `caret` receives the position behind what was kept, in characters of the result.
std::wstring FitEdit(const std::wstring& before, const std::wstring& after, std::size_t limit,
                     std::size_t* caret = nullptr);

// Length in UTF-8 bytes with every line break counted as the two bytes of CR LF.
std::size_t StoredLength(std::wstring_view text);
