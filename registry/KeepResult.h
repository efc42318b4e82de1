#pragma once
// Whether something has reached the disk and, if not, why. It is the result of a registry transaction and of
// everything that stands on one, and travels up to whoever can tell the user or the sender.

#include <string>
#include <system_error>

enum class KeepFailure {
    None,
    NoAccess,  // the file or its folder may not be opened or written
    ReadOnly,  // the file system takes no changes
    DiskFull,  // or the user's share of it
    Locked,    // another program holds the file
    Damaged,   // what is there cannot be trusted, so nothing is written to it
    TooNew,    // a later version of the program made it
    Failed,    // anything else, like a broken disk
};

struct KeepResult {
    KeepFailure failure = KeepFailure::None;
    std::string detail = {};  // what Windows, the kernel or SQLite said, in its own words; for experts

    bool Kept() const { return failure == KeepFailure::None; }
};

// The same for what the operating system says; kept where it says nothing.
KeepResult FailureOf(const std::error_code& error);
