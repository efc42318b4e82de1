#include "app/NoteServices.h"

#include "app/KeptNotes.h"
#include "dialogs/basWait.h"
#include "notes/basNotes.h"

NoteServices::NoteServices() : store_(*this) { store_.OnDelete = KeepDeletedNote; }

void NoteServices::SaveNotes() {
    if (!IsQuitting()) store_.SaveNotes();
}

void NoteServices::ApplyForeground() {
    if (!IsQuitting()) store_.ApplyForeground();
}

void NoteServices::ForgetMinimizedNote(frmNote& note) {
    if (!IsQuitting()) store_.ForgetMinimizedNote(note);
}

void NoteServices::ShowPopupMenu(frmNote& note) {
    if (!IsQuitting() && OpenMenu) OpenMenu(&note, std::nullopt);
}

void NoteServices::ShowPopupMenuAt(frmNote& note, const wxPoint& onScreen) {
    if (!IsQuitting() && OpenMenu) OpenMenu(&note, onScreen);
}

void NoteServices::FocusNextNote(frmNote& note, bool forward) {
    if (!IsQuitting()) store_.NextShown(note, forward).TakeFocus();
}

void NoteServices::EditNote(frmNote& note) {
    if (!IsQuitting()) ::EditNote(store_, note);
}

std::vector<TrayMenuEntry> NoteServices::TrayMenu(const frmNote& note) {
    return DescribeMenu ? DescribeMenu(note) : std::vector<TrayMenuEntry>();
}

void NoteServices::RunFromTrayMenu(frmNote& note, int id) {
    if (!IsQuitting() && RunMenu) RunMenu(note, id);
}
