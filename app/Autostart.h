#pragma once
// The program's entry in the list of what starts with the user's session.

#include <string>

#include "registry/KeepResult.h"

class NoteStore;

// Enters or removes the program. The flag in the store's image follows with the store's next save. Where that
// is impossible the flag stays as it was, and the result says why.
KeepResult SetAutostart(NoteStore& store, bool enable);

// What the platform's own list needs beyond the registry value.
KeepResult EnterInSession();
KeepResult RemoveFromSession();

// Whether the session really starts the program. Users of Windows can change that elsewhere; on Linux the
// flag tells.
bool StartsWithSession(bool flag);
