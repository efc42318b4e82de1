#pragma once
// Names of export files as people type them, and what the file system says about such files.

#include <filesystem>
#include <string>

// The file that a typed name means.
std::filesystem::path TypedPath(const std::wstring& name);

// The file is marked as write-protected and carries no other mark.
bool IsOnlyWriteProtected(const std::filesystem::path& path);

// Where files are looked for first.
std::filesystem::path DocumentsFolder();
