#pragma once
// Export files on disk: opening them, and what the import dialog shows of one without taking all of it into
// memory. Foreign files are read like any others, so what they can make of themselves has its limits here.

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "exchange/ExportedNote.h"

// A file holds no more notes than this; what lies behind them is not looked at.
constexpr std::size_t kMostRecords = 250'000;

// Longest beginning of a text that a list of records holds.
constexpr std::size_t kListedCharacters = 250;

// False for folders, pipes and devices, too.
bool IsFile(const std::filesystem::path& path);

// Opens a file for reading. The stream has failed when there is no such file.
std::ifstream OpenExport(const std::filesystem::path& path);

// Opens a file so that records are written over its beginning and the rest of it stays; creates it when there
// is none. The stream has failed when that is not possible.
std::fstream OpenForExport(const std::filesystem::path& path);

// The texts of the records before the first one without text, each in one line and cut at
// kListedCharacters. Empty when there is no such file.
std::vector<std::wstring> ListExport(const std::filesystem::path& path);

// The record of that index; nothing when the file holds fewer.
std::optional<ExportedNote> RecordOf(const std::filesystem::path& path, std::size_t index);
