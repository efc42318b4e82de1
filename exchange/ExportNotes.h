#pragma once
// Taking notes out of the store into an export file.

class NoteStore;

// "Exportieren": lets the user choose notes and a file and writes them. Whatever goes wrong then is told in
// one message; the notes stay as they are. When the dialog is open already it comes to the front instead.
void ExportNotes(const NoteStore& store);
