#include "base/NewFile.h"

#include <cinttypes>
#include <cstdint>
#include <cwchar>
#include <random>

#include "base/FileName.h"

std::filesystem::path UnfinishedName() {
    std::random_device random;
    wchar_t name[40] = L"";
    std::swprintf(name, std::size(name), L".kivora-%08" PRIx32 L"%08" PRIx32 L".neu",
                  static_cast<std::uint32_t>(random()), static_cast<std::uint32_t>(random()));
    return FilePath(name);
}
