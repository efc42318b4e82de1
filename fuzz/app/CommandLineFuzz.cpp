// Command lines, as Windows gives them and as a shell splits them.
#include "app/CommandLine.h"
#include "fuzz/support/FuzzTarget.h"

namespace {

// The line of these arguments that has no blanks to spare.
std::wstring Joined(const std::vector<std::wstring>& arguments) {
    std::wstring line;
    for (const std::wstring& argument : arguments) line += (line.empty() ? L"/" : L" /") + argument;
    return line;
}

void RequireRequest(const std::vector<std::wstring>& arguments) {
    const StartRequest request = RequestOf(arguments);
    const bool takesFiles = request.kind == StartRequest::Import || request.kind == StartRequest::Print;
    Require(takesFiles || request.files.empty(), "files are there for import and printing alone");
    Require(request.kind != StartRequest::Import || !request.files.empty(), "an import has files");
    Require((request.kind == StartRequest::Wrong) == !request.wrong.empty(), "a wrong option is named");
    std::size_t at = 0;
    for (const std::wstring& file : request.files) {
        while (at < arguments.size() && arguments[at] != file) ++at;
        Require(at++ < arguments.size(), "files are arguments, in their order");
    }
}

void Split(FuzzInput& input) {
    const std::string_view line = input.Field();
    try {
        const std::vector<std::wstring> arguments = SplitCommandLine(std::wstring(line.begin(), line.end()));
        Require(!arguments.empty(), "there is an argument, if an empty one");
        for (const std::wstring& argument : arguments)
            Require(argument.find(L'/') == argument.npos, "each / begins an argument");
        Require(SplitCommandLine(Joined(arguments)) == arguments, "arguments are split as they were joined");
        RequireRequest(arguments);
    } catch (const CommandLineError&) {
        const std::string_view before = line.substr(0, line.find('/'));
        Require(!before.empty() && (before != " " || before == line),
                "only text before the first / is refused");
    }
    std::vector<std::wstring> arguments;
    while (!input.Empty()) arguments.push_back(input.Text());
    RequireRequest(arguments);
}

const FuzzTarget kTarget("CommandLine", Split);

}  // namespace
