#include "registry/RegistryHealth.h"

RegistryHealth HealthOfRegistry() { return {}; }

KeepResult ReadRegistryAgain() { return {}; }

std::optional<RecoveryReport> TakeRecoveryReport() { return std::nullopt; }

void WhenStateIsDue(std::function<void(std::chrono::milliseconds)>) {}

KeepResult KeepState() { return {}; }
