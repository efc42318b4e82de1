#pragma once
// The program's entry in the list of what starts with the user's session.

#include <string>

class NoteStore;

// Enters or removes the program. The flag in the store's image follows with the store's next save.
void SetAutostart(NoteStore& store, bool enable);

// What the platform's own list needs beyond the registry value.
std::wstring AutostartFileName();
void EnterInSession(const std::wstring& fileName);
void RemoveFromSession();
