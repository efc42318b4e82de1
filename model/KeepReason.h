#pragma once
// Why notes could not be read or kept, in words for their user.

#include <string>
#include <system_error>

#include "registry/KeepResult.h"

// What is wrong and what helps, in whole sentences; what Windows, the kernel or SQLite said of it stands in a
// last line of its own. Empty for a result that was kept.
std::wstring ReasonText(const KeepResult& result);

// The same kinds of failure for files that are no hive.
KeepResult FailureOf(const std::error_code& error);
