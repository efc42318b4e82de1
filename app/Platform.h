#pragma once
// What a program has to arrange with its platform before, while and after wxWidgets runs.

#include <functional>
#include <string>
#include <vector>

class wxTopLevelWindow;

// The arguments behind the program's name, as names of files are read.
std::vector<std::wstring> Arguments(int argc, char** argv);

// Text for a terminal. Without one it goes nowhere.
void PrintOut(const std::wstring& text);
void PrintError(const std::wstring& text);

// What comes in on the standard input, up to its end or to some more than this many bytes.
std::string ReadInput(std::size_t most);

// Starts the resident program in a process of its own that goes on without this one. The result tells whether
// that has ended; empty where it could not be started.
std::function<bool()> StartResident();

// The language, the display and what else wxWidgets and its libraries look up when they start.
void PrepareEnvironment();

// How windows look, to be said when wxWidgets has started and before there are any.
void StyleWindows();

// To be called once, when the program has come up or does what it was started for. As soon as everything is
// on the screen, the preparations that only made coming up cheaper are taken back.
void SettleDown();

// Calls `quit` from the event loop when Windows or the session manager (by a signal) asks the program to end,
// while this object lives.
class EndRequests {
  public:
    explicit EndRequests(std::function<void()> quit);
    ~EndRequests();
    EndRequests(const EndRequests&) = delete;
    EndRequests& operator=(const EndRequests&) = delete;

  private:
    std::function<void()> quit_;
    std::vector<unsigned> sources_;
};

// True when the program was started with rights that the user's desktop does not have, and with them sees
// other notes than the user's. Only Windows has such rights.
bool SeesNotesOfAllUsers();

// Calls `last` when the display goes away under the program, before the process ends because of it: from
// within any call that draws, so nothing that draws may be called any more.
void WhenDisplayDies(std::function<void()> last);

// The window comes up without taking the keyboard from where the user types. Keys that reach it all the same,
// because nothing else has the keyboard, are wxEVT_KEY_DOWN events.
void NeverFocus(wxTopLevelWindow& window);

// The libraries that the program is built on, for the sentence "Benutzt ...".
std::wstring UsedLibraries();
