#pragma once
// What the user is told about a hive that was damaged, missing or exchanged.

#include <string>

#include "registry/RegistryHealth.h"

// What happened, how many notes came back from where, which of them may not be what they were, and where the
// file is that was found. The notes are looked up in the registry, so no save must have numbered them anew.
std::wstring RecoveryText(const RecoveryReport& report);
