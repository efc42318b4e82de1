#pragma once
// Notes that came over the network or from a file with more text than the store reads back after a restart.
// They are put into export files, from which they can be imported.

#include <filesystem>

class frmNote;

// The folder "lange-notizen" in the user's data.
std::filesystem::path LongNotesFolder();

// Writes the note to a file of its own there, in several records where its text does not fit one. Throws when
// that fails.
void KeepLongNote(const frmNote& note);
