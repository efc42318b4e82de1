#include "tests/support/OtherTask.h"

std::optional<int> OtherTask() { return std::nullopt; }
