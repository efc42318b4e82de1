#pragma once
// Why notes could not be read or kept, or another file not be written, in words for their user.

#include <string>
#include <system_error>

#include "registry/KeepResult.h"

// What is wrong and what helps, in whole sentences; what Windows, the kernel or SQLite said of it stands in a
// last line of its own. Empty for a result that was kept.
std::wstring ReasonText(const KeepResult& result);

// The same for a file that the user has named. Empty where its name is at fault, and nothing else is known.
std::wstring FileReasonText(const std::error_code& error);
