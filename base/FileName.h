#pragma once
// Names of files as text. A name may hold bytes that are no text in the system's encoding; they survive the
// way from bytes to text and back, so every file can be named.

#include <filesystem>
#include <string>

// The text of a name, and the name of a text. FilePath(FileName(p)) is p for every p.
std::wstring FileName(const std::filesystem::path& path);
std::filesystem::path FilePath(const std::wstring& name);

// The name for people: what is no text shows as U+FFFD.
std::wstring ShownFileName(const std::wstring& name);

// The name from the root of the file system on. The file need not exist.
std::wstring AbsoluteFileName(const std::wstring& name);
