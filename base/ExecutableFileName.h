#pragma once
// The name under which the program enters itself with Windows.

#include <string>

// The full name of a program in a folder: a separator between them unless the folder ends in one, and ".exe"
// behind the name unless it ends so already, in whatever case.
std::wstring ExecutableFileName(const std::wstring& folder, const std::wstring& name);
