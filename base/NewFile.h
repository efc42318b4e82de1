#pragma once
// Files that must not be lost: whole and on the disk, or not there.

#include <filesystem>
#include <string_view>
#include <system_error>

// Makes a file of these bytes that only the user may read, and returns when the disk has it and its name. An
// existing file of that name is left alone (std::errc::file_exists); after any failure there is no new file.
std::error_code WriteNewFile(const std::filesystem::path& file, std::string_view bytes);

// Makes a folder and those above it that are missing, readable for the user alone, and returns when the disk
// has their names. One that is there stays as it is.
std::error_code MakeFolder(const std::filesystem::path& folder);
