#include <utility>

#include "registry/RegistryHealth.h"
#include "registry/RegistryHive.h"

RegistryHealth HealthOfRegistry() { return Hive().Health(); }

KeepResult ReadRegistryAgain() { return Hive().ReadAgain(); }

std::optional<RecoveryReport> TakeRecoveryReport() { return Hive().TakeReport(); }

void WhenStateIsDue(std::function<void(std::chrono::milliseconds)> due) {
    Hive().WhenStateIsDue(std::move(due));
}

KeepResult KeepState() { return Hive().KeepState(); }
