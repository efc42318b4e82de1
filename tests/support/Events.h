#pragma once
// Running the toolkit's events in tests.

#include <chrono>
#include <functional>

#include "base/basWait.h"

// Lets events run for a while.
inline void RunEvents(std::chrono::milliseconds span = std::chrono::milliseconds(50)) {
    WaitUntil([] { return false; }, span);
}

// Lets events run until something holds; false when it does not within two seconds.
inline bool RunUntil(const std::function<bool()>& condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) return false;
        RunEvents(std::chrono::milliseconds(10));
    }
    return true;
}
