#pragma once
// From a path to an opened hive: making it, setting a damaged one aside and bringing back what it held, and
// reading without writing where nothing else is possible for now.

#include <filesystem>
#include <memory>
#include <optional>

#include "registry/HealthReport.h"
#include "registry/HiveFile.h"

struct OpenedHive {
    std::unique_ptr<HiveFile> file;    // null when it cannot be written for now
    KeepResult result;                 // why
    std::unique_ptr<HiveImage> image;  // what is in it; null when that cannot be known for now
    std::optional<RecoveryReport> report;
    std::filesystem::path path;  // of the file itself, behind symbolic links
};

// Waits for other programs until the deadline.
OpenedHive OpenHive(const std::filesystem::path& path, HiveDeadline deadline);

// Makes a new hive of what this process has in memory, in place of one that is damaged or was exchanged. The
// image stays what it was when that fails.
OpenedHive RewriteHive(const std::filesystem::path& path, HiveImage& image, RecoveryReport::Event event,
                       const std::string& detail, HiveDeadline deadline);
