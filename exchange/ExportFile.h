#pragma once
// Opening files that notes are read from.

#include <cstddef>
#include <filesystem>
#include <fstream>

// A file holds no more notes than this; what lies behind them is not looked at.
constexpr std::size_t kMostRecords = 250'000;

// False for folders, pipes and devices, too.
bool IsFile(const std::filesystem::path& path);

// Opens a file for reading. The stream has failed when there is no such file.
std::ifstream OpenExport(const std::filesystem::path& path);
