#pragma once
// Bringing notes from export files into the store.

#include <string>

class NoteStore;

// More notes, or longer texts together, are not taken from one file: each note becomes a window. Such a file
// is none that anybody exported.
constexpr std::size_t kMostImportedNotes = 20'000;
constexpr std::size_t kMostImportedCharacters = 32'000'000;

// Takes the notes of the named file into the store, up to the first record without text. They are neither
// shown nor saved; the caller does that. False when there is no such file or it cannot be read, then the
// notes before the failure are taken, and when it holds more than is taken from one file, then none is.
bool ImportNotes(NoteStore& store, const std::wstring& fileName);

// "Importieren": lets the user choose a file and its notes, takes them into the store, saves and shows them.
// When the dialog is open already it comes to the front instead.
void ImportNotes(NoteStore& store);
