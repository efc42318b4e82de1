#pragma once
// Bringing notes from export files into the store.

#include <string>

class NoteStore;

// Takes the notes of the named file into the store, up to the first record without text. They are neither
// shown nor saved; the caller does that. False when there is no such file or it cannot be read; the notes
// read before a failure stay.
bool ImportNotes(NoteStore& store, const std::wstring& fileName);
