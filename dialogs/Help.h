#pragma once
// Opening help pages.

#include <string>

// Opens a page of the help folder with whatever the desktop opens such files with, and does not wait for it.
// Says so when that fails.
void ShowHelp(const std::wstring& page);
