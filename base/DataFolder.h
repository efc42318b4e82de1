#pragma once
// Where the files of this program lie that belong to its user. Asked anew on every call.

#include <filesystem>

// The folder in which all programs keep such files: $XDG_DATA_HOME, or .local/share in the user's home where
// that names no absolute folder; on Windows that of the roaming profile. Empty when the user has none.
std::filesystem::path SharedDataFolder();

// This program's own folder in it. It need not exist. Empty when the user has none.
std::filesystem::path DataFolder();
