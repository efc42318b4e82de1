#pragma once
// Bringing back what a damaged hive held.

#include <memory>

#include "registry/HealthReport.h"
#include "registry/HivePages.h"

struct Recovery {
    std::unique_ptr<HiveImage> image;
    RecoveryReport report;
};

// Takes what was found in the file and, where that is damaged or missing, the last good state, which may be
// null. The newest is taken; what may not be what it was is named.
Recovery Recover(const FoundRows& found, const HiveImage* state);
