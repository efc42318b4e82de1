#pragma once
// How it stands with what lies behind the registry's calls, which themselves report nothing: for whoever
// tells the user, and whoever repeats what did not succeed. On Windows the registry looks after itself, and
// all of this says that nothing is the matter.

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "registry/KeepResult.h"

struct RegistryHealth {
    // Why nothing can be read. What is read then is empty although something may be there, so every
    // transaction fails until ReadRegistryAgain has succeeded.
    KeepResult reading;
    // Why nothing could be written when it was last tried. What was read is right all the same, as far as it
    // goes; the next transaction tries again.
    KeepResult writing;
};

// Opens the registry if nobody has yet.
RegistryHealth HealthOfRegistry();

// Tries again to read what could not be read. After success nothing of it is known to the program yet: it has
// to be read before anything is written, or it is lost.
KeepResult ReadRegistryAgain();

// What was done about a hive that was damaged, missing or exchanged. Keys stand for notes, among others; they
// are named by their registry paths ("HKLM\Software\...").
struct RecoveryReport {
    enum Event {
        Damaged,   // something in the file was not as the program had written it
        Missing,   // it was not there, but older states of it were
        Replaced,  // it was removed, or another file put in its place, while the program ran
    };
    Event event = Damaged;
    std::string detail;                   // for experts
    std::wstring setAside;                // where the file lies now that was found; empty if there was none
    std::vector<std::wstring> fromFile;   // keys with values that come from that file
    std::vector<std::wstring> fromState;  // keys with values that come from the last good state
    std::vector<std::wstring> doubtful;   // those of both that may be older than they were, or changed
    int lost = 0;                         // keys of which nothing was found
    bool isComplete = true;               // false: there may have been more, of which nothing tells
};

// What happened since the last call, once.
std::optional<RecoveryReport> TakeRecoveryReport();

// Good states are kept beside the hive, for the day it is damaged. `due` is called when the first thing since
// the last state has been written, with the time after which KeepState is to be called; null ends that.
void WhenStateIsDue(std::function<void(std::chrono::milliseconds)> due);

// Keeps the present state, if anything is new in it. The result says why that was impossible; it is due again
// later then.
KeepResult KeepState();
