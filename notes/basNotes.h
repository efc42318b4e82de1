#pragma once
// The operations on notes that open the properties dialog.

class NoteStore;
class frmNote;

// "Neue Notiz": lets the user write a note and adds it to the store. When the dialog is open already it comes
// to the front instead.
void NewNote(NoteStore& store);

// "Notiz bearbeiten": lets the user change the note. A note that was deleted meanwhile is reported and the
// changes are dropped.
void EditNote(NoteStore& store, frmNote& note);
