#pragma once
// Text of desktop entries, the files in which Linux desktops list programs.

#include <string>
#include <string_view>

// A text as the value of a key.
std::string DesktopString(std::string_view text);

// A program's path as the value of the key Exec, so that exactly this program is started whatever characters
// its path holds.
std::string DesktopExec(std::string_view path);

// The entry that starts the program with the user's session.
std::string AutostartEntry(std::string_view path);
