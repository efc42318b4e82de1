#pragma once
// The commands of the command line, such as `kivora --receive none`: one row each in a table, from which
// parsing, help and hand-over take what they need to know. What a command does stands where it is carried
// out: CommandsOfProcess.h for what a started process can do alone, CommandsOfCopy.h for the running copy.

#include <cstddef>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

// A command as it was typed, or as another copy hands it over.
struct Command {
    std::wstring name = {};  // with its hyphens; without a name the arguments are files to be opened
    std::vector<std::wstring> arguments = {};

    bool operator==(const Command&) const = default;
};

// What a command has come to. What it says that it has done is done, and on the disk.
struct CommandAnswer {
    int exitCode = 0;   // 0, or why not: 1 it could not be done, 2 it was wrongly called
    std::wstring text;  // whole lines; an error's where the exit code is not 0
};

// Who carries a command out.
enum class CarriedOutBy {
    Process,     // the one that was started
    CopyOrKept,  // the running copy; where there is none, the process that was started, with what is kept
    Copy,        // the running copy; where there is none, one is started
};

struct CommandRow {
    static constexpr std::size_t kAny = std::numeric_limits<std::size_t>::max();

    const wchar_t* name;
    const wchar_t* arguments;  // as the help shows them
    const wchar_t* help;
    CarriedOutBy by;
    std::size_t least, most;  // arguments
    bool files = false;       // the arguments are names of files
};

std::span<const CommandRow> Commands();

// The row of a name, also of a short form; null when there is none.
const CommandRow* FindCommand(std::wstring_view name);

// How the program is called, in whole lines.
std::wstring UsageText();

// A command as one text without its end mark, and back; nothing for a text that is none or is not complete
// yet. No word may hold a NUL.
std::wstring Packed(const Command& command);
std::optional<Command> Unpacked(std::wstring_view text);
