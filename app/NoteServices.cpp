#include "app/NoteServices.h"

#include "dialogs/DialogStack.h"
#include "dialogs/Message.h"
#include "dialogs/OpenAddress.h"
#include "dialogs/Wait.h"
#include "model/KeepReason.h"
#include "notes/BringBack.h"
#include "notes/NewText.h"
#include "notes/basNotes.h"
#include "notes/frmFind.h"

NoteServices::NoteServices() : store_(*this) {
    store_.OnDelete = KeepDeletedNote;
    store_.OnDeleteTogether = KeepDeletedNotes;
    store_.OnDeleteFlood = KeepDeletedFlood;
    store_.OnUnbinned = [](const Note& note, bool gone, const KeepResult& why) {
        if (gone) return TellOfUnkeptNote(note);
        TellMessage(
            L"Die Notiz wurde nicht gelöscht, denn sie konnte nicht im Papierkorb aufgehoben werden.\r\n" +
                ReasonText(why, L"die Datei im Papierkorb"),
            kCritical, L"Papierkorb");
    };
}

void NoteServices::SaveNotes() {
    if (!IsQuitting()) store_.SaveNotes();
}

void NoteServices::ApplyForeground() {
    if (!IsQuitting()) store_.ApplyForeground();
}

void NoteServices::ForgetMinimizedNote(frmNote& note) {
    if (!IsQuitting()) store_.ForgetMinimizedNote(note);
}

void NoteServices::ShowPopupMenu(frmNote& note, std::optional<wxPoint> at) {
    if (!IsQuitting() && OpenMenu) OpenMenu(&note, at);
}

void NoteServices::FocusNextNote(frmNote& note, bool forward) {
    if (!IsQuitting()) store_.NextShown(note, forward).TakeFocus();
}

void NoteServices::PassKeyboardOn(frmNote& note) {
    if (!IsQuitting()) store_.GiveKeyboard(note.NoteKey(), note.UsedByKeys());
}

void NoteServices::EditNote(frmNote& note) {
    if (IsQuitting()) return;
    const KeyboardReturn back(store_.KeyboardTo(note));
    ::EditNote(store_, note);
}

void NoteServices::OpenLink(const std::wstring& address) {
    if (IsQuitting() || OpenAddress(address) || IsQuitting()) return;
    TellMessage(L"Die Adresse " + address +
                    L" konnte nicht geöffnet werden.\r\nStellen Sie bitte sicher, dass ein Internet-Browser "
                    L"und ein E-Mail-Programm installiert sind.",
                kCritical, L"Adresse öffnen");
}

bool NoteServices::AddText(const std::wstring& text) { return !IsQuitting() && ::AddText(store_, text); }

void NoteServices::ImportFiles(const std::vector<std::wstring>& fileNames) {
    for (const std::wstring& fileName : fileNames) {
        if (!IsQuitting() && ImportFile) ImportFile(fileName);
    }
}

void NoteServices::Find(const std::wstring& words) {
    if (!IsQuitting()) frmFind::Open(store_, bin_, words);
}

void NoteServices::FindNotes(frmNote& note) {
    const KeyboardReturn back(store_.KeyboardTo(note));
    Find({});
}

void NoteServices::BringBackDeleted() {
    if (IsQuitting()) return;
    if (frmNote* const back = BringBackLast(store_, bin_)) back->TakeFocus();
}

std::vector<TrayMenuEntry> NoteServices::TrayMenu(const frmNote& note) {
    return DescribeMenu ? DescribeMenu(note) : std::vector<TrayMenuEntry>();
}

void NoteServices::RunFromTrayMenu(frmNote& note, int id) {
    if (!IsQuitting() && RunMenu) RunMenu(note, id);
}
