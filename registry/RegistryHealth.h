#pragma once
// How it stands with what lies behind the registry's calls, which themselves report nothing: for whoever
// tells the user, and whoever repeats what did not succeed. On Windows the registry looks after itself; there
// is only the image that was being rewritten when the program ended, and could not be completed yet.

#include <chrono>
#include <functional>
#include <optional>

#include "registry/HealthReport.h"

// Opens the registry if nobody has yet.
RegistryHealth HealthOfRegistry();

// Tries again to read what could not be read. After success nothing of it is known to the program yet: it has
// to be read before anything is written, or it is lost.
KeepResult ReadRegistryAgain();

// What happened since the last call, once.
std::optional<RecoveryReport> TakeRecoveryReport();

// Good states are kept beside the hive, for the day it is damaged. `due` is called when the first thing since
// the last state has been written, with the time after which KeepState is to be called; null ends that.
void WhenStateIsDue(std::function<void(std::chrono::milliseconds)> due);

// Keeps the present state, if anything is new in it. The result says why that was impossible; it is due again
// later then.
KeepResult KeepState();
