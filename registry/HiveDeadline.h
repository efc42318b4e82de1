#pragma once
#include <chrono>

// Until when to wait for other programs that hold a file.
using HiveDeadline = std::chrono::steady_clock::time_point;
