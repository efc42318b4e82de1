#pragma once
// Opening help pages, and the places where the program finds what belongs to it.

#include <string>

// Opens a page of the help folder with whatever the desktop opens such files with, and does not wait for it.
// Says so when that fails.
void ShowHelp(const std::wstring& page);

// Folder of the running program, without a separator at its end.
std::wstring ProgramFolder();

// Full path of the running program.
std::wstring ProgramPath();

// Opens a file or address with its default program: one argument, no shell. False when there is none.
bool OpenAddress(const std::wstring& address);
