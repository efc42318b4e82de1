#pragma once
#include <optional>

// What this program was started for when that is no testing: its exit code. A platform where processes are
// not forked needs that, where a test has another process do something.
std::optional<int> OtherTask();
