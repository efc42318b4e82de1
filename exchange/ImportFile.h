#pragma once
// The notes of a file that can be imported. That is an export file, one in which the program kept notes
// exactly (KeptFile.h), or, where its name ends in ".txt", a text file, which is one note. Foreign files are
// read like any others, so what they can make of themselves has its limits here.

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/Note.h"

// Longest beginning of a text that a list of notes holds.
constexpr std::size_t kListedCharacters = 250;

// More notes, or longer texts together, are not taken from one file: each note becomes a window. Such a file
// is none that anybody exported.
constexpr std::size_t kMostImportedNotes = 20'000;
constexpr std::size_t kMostImportedCharacters = 32'000'000;

// A larger text file is none that somebody wants as a note.
constexpr std::size_t kMostTextFileBytes = 1'000'000;

// The note in a text file's bytes: UTF-8 with or without a mark at its beginning, or what is no UTF-8 in the
// ANSI code page, as AsNoteText makes it. It was written now and looks as a new note.
Note NoteOfText(std::string_view bytes);

// The texts of a file's notes, each in one line and cut at kListedCharacters. Empty when there is no such
// file or it cannot be read.
std::vector<std::wstring> ListNotes(const std::filesystem::path& path);

// The note of that index in the list; nothing when there are fewer.
std::optional<Note> NoteAt(const std::filesystem::path& path, std::size_t index);

struct ReadNotes {
    std::vector<Note> notes;
    bool complete = false;  // all that were wanted; else the file could not be read to its end
    bool records = false;   // they are records of an export file, whose places count as they are
};

// Those of the first `count` notes that are wanted, in the order of the file; of one that holds more than is
// taken from a file, none, and it is not complete.
ReadNotes ReadNotesOf(const std::filesystem::path& path, std::size_t count,
                      const std::function<bool(std::size_t index)>& wanted);
