#pragma once
// Export files belong to the program: opening one imports its notes, printing one prints them.

#include <string>

// Enters the file type with its icon and its two commands in the registry and, where that is another place,
// with the user's desktop. To be called at every start, from wherever the program may have been moved to.
// Failures are silent. Always true.
bool RegisterFileExtensions();

// The program's name in the commands of the registry.
std::wstring RegisteredProgram();

// Does on its own what the desktop needs beyond the registry, when the program is next idle.
void RegisterWithDesktop();
