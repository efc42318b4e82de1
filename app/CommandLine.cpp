#include "app/CommandLine.h"

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
            request.files.clear();
            if (argument == L"--help" || argument == L"-h") {
                request.kind = StartRequest::Help;
            } else if (argument == L"--version") {
                request.kind = StartRequest::Version;
            } else {
                request.kind = StartRequest::Wrong;
                request.wrong = argument;
            }
            return request;
        } else {
            if (request.kind == StartRequest::Resident) request.kind = StartRequest::Import;
            request.files.push_back(argument);
        }
    }
    return request;
}
