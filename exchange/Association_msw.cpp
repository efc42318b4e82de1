#include "base/ExecutableFileName.h"
#include "base/FileName.h"
#include "exchange/Association.h"

std::wstring RegisteredProgram() {
    return ExecutableFileName(ProgramFolder(), FileName(FilePath(ProgramPath()).filename()));
}

// The registry is all that the shell looks at.
void RegisterWithDesktop() {}
