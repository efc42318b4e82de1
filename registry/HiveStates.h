#pragma once
// The good states of a hive that are kept beside it: FILE.stand, the newest, and the last one of each of the
// seven days before, FILE.stand-YYYYMMDD.

#include <filesystem>
#include <memory>

#include "registry/HiveFile.h"

// Copies the opened hive. What is not good is not kept, and the result is Damaged then.
KeepResult KeepState(HiveFile& opened, const std::filesystem::path& file);

// The newest state that is good, null when there is none.
std::unique_ptr<HiveImage> NewestState(const std::filesystem::path& file);

// True when a state was kept after the hive was written last.
bool IsStateNew(const std::filesystem::path& file);

// For a hive that was closed, which writes to the file, but changes nothing that is in it.
void MarkStateNew(const std::filesystem::path& file);
