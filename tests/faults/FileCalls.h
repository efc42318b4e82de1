#pragma once
// Every call for files that this process makes, from our own code and from the libraries, SQLite among them:
// the functions of the C library are replaced by ones that count the calls below one folder, tell them to who
// wants to know, and let one of them end in a fault. What lies elsewhere is not touched.
//
// Nothing is synchronized in truth, which makes many runs quick: who wants to know what a power cut leaves
// asks Disk.h.

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

enum class CallKind : std::uint8_t {
    Open,
    Close,
    Read,
    Write,
    Truncate,
    Sync,
    Rename,
    Link,
    Remove,
    MakeFolder,
    Rights,
    Lock,
    Look,  // does it exist, how large is it
    Map
};

// What such a call can fail with.
const std::vector<int>& ErrorsOf(CallKind kind);

struct Fault {
    enum Kind {
        None,
        KillBefore,  // the process, at once
        KillInside,  // when half the bytes are written
        FailOnce,
        FailForGood,  // this call, and all later ones that such an error meets
    };
    Kind kind = None;
    std::int64_t at = 0;  // which call below the folder, the first one is 1
    int error = 0;        // as in errno
};

struct FileCall {
    CallKind kind = CallKind::Open;
    int file = -1;  // as the kernel numbers it
    int flags = 0;  // of an opening
    bool succeeded = false;
};

struct FileWatcher {
    std::function<void(const FileCall&)> seen = {};  // after each call
    std::function<void()> dying = {};                // before a fault kills the process
};

// Starts anew with the number 1. The folder is named as the calls will name it.
void WatchFiles(const std::string& folder, const Fault& fault, const FileWatcher& watcher = {});

// Lets everything succeed from here on; counts on.
void EndFault();
bool FaultHasCome();
