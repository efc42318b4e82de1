#pragma once
// Names of files for the parts of Windows that only take characters of the ANSI code page.

#include <string>

// The name itself where the code page has all its characters, else a short form that the disk may have for
// the file; else the name as it is.
std::wstring NameInCodePage(const std::wstring& name);
