#include "app/StateTimer.h"

#include <chrono>

#include "registry/RegistryHealth.h"

StateTimer::StateTimer() {
    WhenStateIsDue([this](std::chrono::milliseconds pause) { StartOnce(static_cast<int>(pause.count())); });
}

StateTimer::~StateTimer() {
    WhenStateIsDue(nullptr);
    KeepState();
}

void StateTimer::Notify() { KeepState(); }
