#include "app/Autostart.h"
#include "base/ExecutableFileName.h"
#include "base/FileName.h"

std::wstring AutostartFileName() {
    return ExecutableFileName(ProgramFolder(), FileName(FilePath(ProgramPath()).filename()));
}

// The registry value is all that Windows looks at.
KeepResult EnterInSession(const std::wstring&) { return {}; }
KeepResult RemoveFromSession() { return {}; }
