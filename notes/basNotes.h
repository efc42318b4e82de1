#pragma once
// The operations on notes that open the properties dialog.

#include <optional>

#include "model/Note.h"
#include "registry/KeepResult.h"

class NoteStore;
class frmNote;

// A text that was written or changed in the dialog and does not become a note goes where deleted notes go
// (NoteStore::OnDelete), with the look that the dialog shows.

// "Neue Notiz": lets the user write a note and adds it to the store. When the dialog is open already it comes
// to the front instead.
void NewNote(NoteStore& store);

// "Notiz bearbeiten": lets the user change the note. A note that was deleted meanwhile is reported and the
// changes are dropped.
void EditNote(NoteStore& store, frmNote& note);

// Does so at once with the text of a dialog that is open, because the program is to end, and tells nobody.
// Touches no window; what is written further is kept anew. The result is a text that could not be kept there,
// and why.
struct UnkeptText {
    Note note;
    KeepResult why;
};
std::optional<UnkeptText> KeepTextBeingWritten();
