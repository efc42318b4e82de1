#include "app/CommandLine.h"

#include <utility>

std::vector<std::wstring> SplitCommandLine(const std::wstring& commandLine) {
    std::vector<std::wstring> arguments(1);
    bool inside = false;
    for (std::size_t i = 0; i < commandLine.size(); ++i) {
        const wchar_t character = commandLine[i];
        if (character == L'/') {
            if (inside) arguments.emplace_back();
            inside = true;
        } else if (character == L' ' && i + 1 < commandLine.size() && commandLine[i + 1] == L'/') {
            continue;
        } else {
            if (!inside) throw CommandLineError("text before the first \"/\" of the command line");
            arguments.back() += character;
        }
    }
    return arguments;
}

namespace {

StartRequest Wrong(std::wstring why) { return {StartRequest::Wrong, {}, {}, std::move(why)}; }

// words: the command's name, possibly with "=" and its first argument, and what follows it.
StartRequest CommandOf(const std::vector<std::wstring>& words) {
    std::wstring name = words[0];
    std::vector<std::wstring> arguments(words.begin() + 1, words.end());
    if (const std::size_t sign = name.find(L'='); sign != name.npos && name.starts_with(L"--")) {
        arguments.insert(arguments.begin(), name.substr(sign + 1));
        name.resize(sign);
    }
    const CommandRow* const row = FindCommand(name);
    if (!row) return Wrong(L"unbekannte Option " + name);
    if (arguments.size() < row->least) return Wrong(L"zu " + name + L" fehlt " + row->arguments);
    if (arguments.size() > row->most) return Wrong(L"zu viel hinter " + name);
    return {StartRequest::Run, {}, {row->name, std::move(arguments)}};
}

}  // namespace

StartRequest RequestOf(const std::vector<std::wstring>& arguments) {
    StartRequest request;
    bool options = true;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::wstring& argument = arguments[i];
        if (i == 0 && (argument == L"[print]" || argument == L"/[print]")) {
            request.kind = StartRequest::Print;
        } else if (options && argument == L"--") {
            options = false;
        } else if (options && argument.size() > 1 && argument[0] == L'-') {
            const StartRequest command =
                CommandOf({arguments.begin() + static_cast<std::ptrdiff_t>(i), arguments.end()});
            const CommandRow* const row = FindCommand(command.command.name);
            if (i > 0 && row && row->by != CarriedOutBy::Process)
                return Wrong(std::wstring(row->name) + L" steht nicht an erster Stelle");
            return command;
        } else {
            if (request.kind == StartRequest::Resident) request.kind = StartRequest::Import;
            request.files.push_back(argument);
        }
    }
    return request;
}
