#pragma once
// Files in which the program itself keeps notes, so that nothing of them is lost: the bin, long notes,
// unsaved work. To every reader of export files they are ordinary ones, with '?' for what the code page lacks
// and a long text in several records. Behind the record without text that ends those stands an appendix with
// the notes exactly as they are, and a check sum over everything before it, so that leftovers of another file
// are never taken for an appendix. docs/kvr.md describes it.

#include <optional>
#include <string>
#include <vector>

#include "base/ByteSource.h"
#include "model/Note.h"

// A larger file is not read as a kept one, which bounds the memory that a foreign file can take.
constexpr std::size_t kMostKeptBytes = 160'000'000;

// The whole content of such a file. A note without text has no record in it and stands in the appendix only.
std::string KeptFileBytes(const std::vector<Note>& notes);

// The notes of such a file, in every field as they were given to KeptFileBytes; only halves of surrogate
// pairs that stand alone have become U+FFFD. Nothing for any other export file, and for one that was altered
// or cut off; its records can be read all the same. The source stands at its beginning, and is left anywhere.
std::optional<std::vector<Note>> ExactNotes(ByteSource& file);

// The same when there is an appendix, else the notes of the records.
std::vector<Note> NotesOfKeptFile(ByteSource& file);
