#pragma once
// Names of files as text. A name may hold bytes that are no text in UTF-8, or half characters on Windows;
// they survive the way from bytes to text and back, so every file can be named.

#include <filesystem>
#include <string>
#include <string_view>

// The text of a name, and the name of a text. FilePath(FileName(p)) is p for every p.
std::wstring FileName(const std::filesystem::path& path);
std::filesystem::path FilePath(const std::wstring& name);

// The same for the bytes of a name in files: UTF-8 on Windows, what the kernel takes it for on Linux. Halves
// of characters that Windows lets names have do not come back.
std::string FileNameBytes(const std::wstring& name);
std::wstring FileNameOfBytes(std::string_view bytes);

// The name for people: what is no text shows as U+FFFD.
std::wstring ShownFileName(const std::wstring& name);

// The beginning of a text as part of a file's name that every file system takes: one line, what names cannot
// hold as blanks, no blanks at its ends and none beside another, no full stop at its end, at most so many
// characters. Empty when nothing is left.
std::wstring NameFromText(std::wstring_view text, std::size_t longest);

// The name from the root of the file system on. The file need not exist.
std::wstring AbsoluteFileName(const std::wstring& name);

// Full path of the running program, and its folder without a separator at its end.
std::wstring ProgramPath();
std::wstring ProgramFolder();

// The path under which the program enters itself in the registry. On Windows it ends in ".exe", and where the
// code page lacks a character it is a short form, if the disk has one.
std::wstring RegisteredProgram();
