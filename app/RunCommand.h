#pragma once
// A command of the command line in the process that was started with it.

#include "app/Commands.h"

// Has it carried out by whoever the table names, prints the answer and returns the process's exit code.
int RunCommand(const Command& command);
