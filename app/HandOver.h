#pragma once
// The agreement between copies of the program: one of them is the running copy, and it takes names of files
// and commands from the others. The test for a running copy and the channel to it are one thing, so they
// cannot disagree.

#include <functional>
#include <memory>
#include <string>

#include "app/Commands.h"

class RunningCopy {
  public:
    // What is done with what another copy hands over. A command without a name is one file to be opened, an
    // absolute path; nobody waits for the answer to that.
    using Receive = std::function<CommandAnswer(const Command& command)>;

    virtual ~RunningCopy() = default;  // gives the role up

    // From now on `receive` gets what other copies hand over, one after the other, each as an event of its
    // own. What arrived before is delivered then.
    virtual void Listen(Receive receive) = 0;

    // Takes nothing more. What the other copies know to be taken is delivered before it returns.
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

// The same for a command, whose answer is waited for as well, a minute at the most.
struct HandedOver {
    enum Outcome {
        NobodyThere,  // there is no running copy
        Silent,       // it does not answer, and does not take the command later either
        Lost,         // it took the command; what became of that is not known
        Answered,
    };
    Outcome outcome = NobodyThere;
    CommandAnswer answer = {};
};
HandedOver HandOver(const Command& command);
