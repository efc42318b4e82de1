#pragma once
// The agreement between copies of the program: one of them is the running copy, and it takes file names from
// the others. The test for a running copy and the channel to it are one thing, so they cannot disagree.

#include <functional>
#include <memory>
#include <string>

class RunningCopy {
  public:
    virtual ~RunningCopy() = default;  // gives the role up

    // From now on `receive` gets each file name (an absolute path) that another copy hands over, as an event
    // of its own. Names that arrived before are delivered then.
    virtual void Listen(std::function<void(const std::wstring& fileName)> receive) = 0;

    // Takes no more names. Those that the other copies know to be taken are delivered before it returns.
    virtual void Finish() = 0;

    // Makes this process the running copy; null when another one is. A copy that was killed leaves nothing
    // behind that would be taken for a running one. Where there is no place at all for copies to meet, every
    // copy is a running one.
    static std::unique_ptr<RunningCopy> Claim();
};

// Hands a file name to the running copy and waits until it has taken it, 5 seconds at the most. The name is
// made absolute; the file need not exist. False when there is no running copy or it does not answer; then the
// name is withdrawn, and that copy does not take it later either.
bool HandOver(const std::wstring& fileName);
