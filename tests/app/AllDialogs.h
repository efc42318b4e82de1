#pragma once
// Every dialog of the program under a name: for what all of them owe their users, and for what may happen
// while one of them is open.

#include <functional>
#include <vector>

#include "tests/support/Controls.h"

class NoteStore;

// The store must outlive the dialogs. cancelled: called when the user stops the sending.
std::vector<NamedDialog> AllDialogs(NoteStore& store, std::function<void()> cancelled);
