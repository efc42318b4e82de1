#pragma once
#include <string>

// What a command of the shell writes, without line breaks at its end.
std::string ShellOutput(const std::string& command);
