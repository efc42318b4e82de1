#pragma once
// A text from elsewhere, such as the clipboard, becomes a new note.

#include <string>

class NoteStore;

// Adds the note at the next place for new notes and in the look of one. True once it is saved. Of an empty
// text nothing becomes and nothing is said; why any other became no note, and what of a long one does not
// come back after a restart, the user is told in a box that nobody waits for.
bool AddText(NoteStore& store, const std::wstring& text);
