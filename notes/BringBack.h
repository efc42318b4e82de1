#pragma once
// Bringing deleted notes back from the bin. They leave it only when they are saved; what goes wrong is told
// the user.

#include <vector>

#include "notes/NoteBin.h"

class NoteStore;
class frmNote;

// Puts the notes back where they were, those that are still in the bin. False when they could not be saved;
// then they are all still in the bin.
bool BringBack(NoteStore& store, NoteBin& bin, const std::vector<BinnedNote>& notes);

// The same for what was deleted last: one note, or those that were deleted together. One of them; null when
// there is none.
frmNote* BringBackLast(NoteStore& store, NoteBin& bin);

// Tells that the bin cannot be read, if that is so. read: NoteBin::Content::read.
void TellOfUnreadableBin(const KeepResult& read);
