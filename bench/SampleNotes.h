#pragma once
// The notes that everything is measured with, the same for all programs.

#include <vector>

#include "model/Note.h"

// Their size on the screen in pixels; nothing else there has it.
constexpr int kNoteWidth = 210, kNoteHeight = 118;

enum class Looks {
    Plain,
    TwelveFonts,
    AllFonts,  // each size, plain, bold, italic and both: 72
    Crowded,   // of all looks, on a small part of the screen, a third of them in the foreground
};

std::vector<Note> SampleNotes(int count, Looks looks = Looks::Plain);
