#pragma once
#include <cstdio>
#include <string>

// What a command of the shell writes, without line breaks at its end.
inline std::string ShellOutput(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (!pipe) return output;
    char buffer[4096];
    for (std::size_t count; (count = fread(buffer, 1, sizeof buffer, pipe)) > 0;)
        output.append(buffer, count);
    pclose(pipe);
    while (output.ends_with('\n')) output.pop_back();
    return output;
}
