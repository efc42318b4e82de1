#pragma once
// The agreement between copies of the program: one of them is the running copy, and it takes file names from the
// others. The test for a running copy and the channel to it are one thing, so they cannot disagree.

#include <functional>
#include <memory>
#include <string>

class RunningCopy {
  public:
    virtual ~RunningCopy() = default;  // gives the role up

    // From now on `receive` gets each file name (an absolute path) that another copy hands over, as an event of
    // its own. Names that arrived before are delivered then.
    virtual void Listen(std::function<void(const std::wstring& fileName)> receive) = 0;

    // Makes this process the running copy; null when another one is. A copy that was killed leaves nothing
    // behind that would be taken for a running one.
    static std::unique_ptr<RunningCopy> Claim();
};

// Hands a file name to the running copy and waits until it has taken it, 5 seconds at the most. False when it
// does not answer.
bool HandOver(const std::wstring& fileName);
