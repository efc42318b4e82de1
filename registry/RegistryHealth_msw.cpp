#include "registry/RegistryHealth.h"
#include "registry/ReplaceKey.h"
#include "registry/ReplaceKey_msw.h"
#include "registry/SettingsKey.h"

RegistryHealth HealthOfRegistry() { return {LastCompletion(), LastCompletion()}; }

KeepResult ReadRegistryAgain() { return CompleteKey(kSettingsKey); }

std::optional<RecoveryReport> TakeRecoveryReport() { return std::nullopt; }

void WhenStateIsDue(std::function<void(std::chrono::milliseconds)>) {}

KeepResult KeepState() { return {}; }
