#pragma once
// What the program was started for. A raw command line introduces every argument by "/"; where the shell has
// split it already, each argument is one.

#include <stdexcept>
#include <string>
#include <vector>

#include "app/Commands.h"

// Text before the first "/".
class CommandLineError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The arguments of a raw command line (the text behind the program's name). Blanks inside an argument are
// kept, a blank directly before "/" is not; quotation marks mean nothing. One empty element when there are
// none. Throws CommandLineError.
std::vector<std::wstring> SplitCommandLine(const std::wstring& commandLine);

struct StartRequest {
    enum Kind { Resident, Import, Print, Run, Wrong };
    Kind kind = Resident;
    std::vector<std::wstring> files;  // Import, Print
    Command command = {};             // Run
    std::wstring wrong = {};          // Wrong: what, in a sentence without its full stop
};

// What arguments ask for: none of them the resident program, "[print]" (or "/[print]") first printing, a word
// with a hyphen the command of that name with all that follows, else file names to import. Behind "--" there
// are file names only.
StartRequest RequestOf(const std::vector<std::wstring>& arguments);
