#pragma once
// A hive as the program writes it, some bytes of which are changed.

#include <filesystem>
#include <string>

#include "fuzz/support/FuzzTarget.h"

// A folder of its own for the hive, which is empty whenever it is asked for.
std::filesystem::path EmptyHiveFolder();

constexpr std::size_t kSavedNotes = 5;

// Writes so many notes into the hive in this folder; they are in its file alone then.
void SaveSomeNotes();

// Changes what the input says: places and bytes, runs of zeros, or where the file is cut off.
std::string Damaged(std::string bytes, FuzzInput& input);

std::string BytesOfFile(const std::filesystem::path& file);
void WriteFile(const std::filesystem::path& file, const std::string& bytes);
