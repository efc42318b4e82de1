#pragma once
// What the program was started for. A raw command line introduces every argument by "/"; where the shell has
// split it already, each argument is one.

#include <stdexcept>
#include <string>
#include <vector>

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
    enum Kind { Resident, Import, Print, Help, Version, Wrong };
    Kind kind = Resident;
    std::vector<std::wstring> files;
    std::wstring wrong;  // the option that is not known
};

// What arguments ask for: none of them the resident program, "[print]" (or "/[print]") first printing, else
// file names to import. --help, --version and -- as usual.
StartRequest RequestOf(const std::vector<std::wstring>& arguments);
