#pragma once
// The program's entry in the list of what starts with the user's session.

#include <string>

class NoteStore;

// The full name of a program in a folder: a separator between them unless the folder ends in one, and ".exe"
// behind the name unless it ends so already, in whatever case.
std::wstring ExecutableFileName(const std::wstring& folder, const std::wstring& name);

// Enters or removes the program. The flag in the store's image follows with the store's next save.
void SetAutostart(NoteStore& store, bool enable);

// What the platform's own list needs beyond the registry value.
std::wstring AutostartFileName();
void EnterInSession(const std::wstring& fileName);
void RemoveFromSession();
