#pragma once
// What a hive file looked like when it was closed, in a small file beside it. SQLite leaves much of a file
// unused, and a byte that changes there changes no key and no value: only the seal shows it.

#include <cstdint>
#include <filesystem>

#include "registry/HiveImage.h"

// Seals a closed file that holds this image. Where that cannot be, there is no seal.
void SealHive(const std::filesystem::path& file, const HiveImage& image);

// True when the file holds the sealed image and is another one all the same: not what a program does that
// changes a hive. False without a seal, and when it cannot be read.
bool IsSealBroken(const std::filesystem::path& file, const HiveImage& image);

// For the time in which the file is written to.
void RemoveSeal(const std::filesystem::path& file);
