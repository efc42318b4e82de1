#pragma once
// Notes that would be lost otherwise are kept as export files in folders of the user's data, from which they
// can be imported.

#include <vector>

#include "notes/NoteBin.h"
#include "registry/KeepResult.h"

// For a note that came over the network or from a file with more text than the store reads back after a
// restart: writes it to "lange-notizen", unless it lies there already.
KeepResult KeepLongNote(const Note& note);

// For a note that is about to be deleted: writes it to "papierkorb", where the newest 100 stay, and returns
// when it is on the disk. A note without text needs no keeping.
KeepResult KeepDeletedNote(const Note& note);

// The same for notes that the user deletes together: they go into one file, which counts as one note.
KeepResult KeepDeletedNotes(const std::vector<Note>& notes);

// For notes that came as a flood and are about to be deleted together: writes them to files of many notes in
// "papierkorb/flut", where the newest 10 files stay, so that they take no place of notes that the user
// deleted one by one. Returns when all are on the disk.
KeepResult KeepDeletedFlood(const std::vector<Note>& notes);

// What lies in "papierkorb", without the floods.
class KeptBin : public NoteBin {
  public:
    Content Read() const override;
    KeepResult Remove(const std::vector<BinnedNote>& notes) override;

  private:
    std::vector<BinnedNote> stuck_;  // removed, but their files could not be changed
};

// For one that was deleted and is not there: a little later a message says so, and the text lies in the
// clipboard then.
void TellOfUnkeptNote(const Note& note);
