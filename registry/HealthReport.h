#pragma once
// What is said of the state of the registry, and of what was done about a damaged one.

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

// What was done about a hive that was damaged, missing or exchanged. Keys stand for notes, among others; they
// are named by their registry paths ("HKLM\Software\...").
struct RecoveryReport {
    enum Event {
        Damaged,   // something in the file was not as the program had written it
        Missing,   // it was not there, but older states of it were
        Replaced,  // it was removed, or another file put in its place, while the program ran
    };
    Event event = Damaged;
    std::string detail = {};     // for experts
    std::wstring setAside = {};  // where the file lies now that was found; empty if there was none
    std::vector<std::wstring> fromFile = {};   // keys with values that come from that file
    std::vector<std::wstring> fromState = {};  // keys with values that come from the last good state
    std::vector<std::wstring> doubtful = {};   // those of both that may be older than they were, or changed
    int lost = 0;                              // keys of which nothing was found
    bool isComplete = true;                    // false: there may have been more, of which nothing tells
};
