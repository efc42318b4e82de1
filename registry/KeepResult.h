#pragma once
// Whether something has reached the disk and, if not, why. It is the result of a registry transaction and of
// everything that stands on one, and travels up to whoever can tell the user or the sender.

#include <string>
#include <system_error>

enum class KeepFailure {
    None,
    NoAccess,   // the file or its folder may not be opened or written
    ReadOnly,   // the file system takes no changes
    DiskFull,   // no space is left
    OverQuota,  // the user's share of it is used up
    Locked,     // another program holds the file
    BadDisk,    // the disk does not read or write what it should
    NoFile,     // something else lies in its place or in that of its folder
    DeadLink,   // a link in its place leads to nothing
    Damaged,    // what is there cannot be trusted, so nothing is written to it
    TooNew,     // a later version of the program made it
    Failed,     // anything else; the code says what
};

struct KeepResult {
    KeepFailure failure = KeepFailure::None;
    std::string detail = {};  // what the kernel, Windows or SQLite said, in its own words; for experts
    int code = 0;             // its number, where there is one
    std::wstring file = {};   // which one, where that is known

    bool Kept() const { return failure == KeepFailure::None; }
};

// The failure behind an error of the kernel or of Windows.
KeepResult FailureOf(const std::error_code& error);
