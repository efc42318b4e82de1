#pragma once
// What a hive file looked like when it was closed, in a small file beside it. SQLite leaves much of a file
// unused, and a byte that changes there changes no key and no value: only the seal shows it.

#include <cstdint>
#include <filesystem>
#include <optional>

#include "registry/HiveImage.h"

// Seals a closed file that holds this image. Where that cannot be, there is no seal.
void SealHive(const std::filesystem::path& file, const HiveImage& image);

// What the seal says of a file that is not open: closing a file takes this process SQLite's locks on it.
struct SealedFile {
    bool isBroken = false;
    std::optional<std::uint64_t> brokenIf;  // it holds the image of this total still

    // True when the file holds the sealed image and is another one all the same: not what a program does that
    // changes a hive. False without a seal, and when it cannot be read.
    bool IsBroken(const HiveImage& image) const;
};
SealedFile LookAtSeal(const std::filesystem::path& file);

// For the time in which the file is written to.
void RemoveSeal(const std::filesystem::path& file);
