#pragma once
// From a decided start to the end of the process: the resident program, the import and the printing of files
// named on the command line, and the orderly end of each.

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/CommandLine.h"
#include "app/CopyCommands.h"
#include "app/HandOver.h"
#include "app/Keeping.h"
#include "app/NoteServices.h"
#include "app/Receiving.h"
#include "app/StateTimer.h"
#include "net/basNetworkAccess.h"

class frmStart;

class Program {
  public:
    // role: null where this process is not the running copy.
    explicit Program(std::unique_ptr<RunningCopy> role, const NetworkAccess::Options& network = {});
    ~Program();

    // The resident program: from its picture on the screen to its end.
    void Reside();

    // Takes the files into the saved notes, says of each how that went, and returns: false when one failed.
    // Files that other copies hand over meanwhile are dealt with in the same way.
    bool ImportFiles(const std::vector<std::wstring>& files);

    // Says of the first file that the running copy does not answer, and tries to hand over the others.
    void ReportSilentCopy(std::vector<std::wstring> files);

    void PrintFiles(const std::vector<std::wstring>& files);

    // "Beenden": saves and lets the program come to its end. Where saving fails the user is asked first, and
    // may stay.
    void QuitApplication();

    // Saves, into another file if need be, ends all waiting and lets the program come to its end. Asks
    // nobody. The notes are still there when it returns.
    void EndAtOnce();

    // Saves without touching the screen; the process ends afterwards.
    void DisplayHasDied();

    NoteStore& Store() { return services_.Store(); }

  private:
    void InitApplication();
    void HasComeUp(bool firstStart);  // all notes are on the screen
    void LoadNotes();
    CommandAnswer CarryOut(const Command& command);
    void ReceiveFile(const std::wstring& fileName);
    void Print();
    void ShowState();
    bool ImportQueuedFiles();
    void ReportFailure();
    std::vector<std::wstring> Unreported() const;
    void Unload();

    std::unique_ptr<RunningCopy> role_;
    std::optional<StateTimer> stateTimer_{std::in_place};
    NoteServices services_;
    Keeping keeping_;
    NetworkAccess network_;
    std::optional<Receiving> receiving_;  // of the resident program
    std::optional<CopyCommands> commands_;
    frmStart* start_ = nullptr;
    Trouble trouble_ = Trouble::None;
    std::deque<std::wstring> files_;   // still to be imported
    std::deque<std::wstring> failed_;  // could not be imported, and nobody has been told
};

// Starts wxWidgets, does what was asked for and returns the process's exit code: 1 without a display, and
// when a file could not be imported.
int RunProgram(const StartRequest& request, std::unique_ptr<RunningCopy> role, char* programName);
