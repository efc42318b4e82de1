#include "base/NewFile.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <random>

std::filesystem::path UnfinishedName() {
    std::random_device random;
    char name[40];
    std::snprintf(name, sizeof name, ".kivora-%08" PRIx32 "%08" PRIx32 ".neu",
                  static_cast<std::uint32_t>(random()), static_cast<std::uint32_t>(random()));
    return name;
}
