#include "notes/NoteAccess.h"

#include "notes/frmNote.h"

std::wstring NoteAccess::Name(const frmNote& note) { return L"Notiz: " + note.ShortText(); }

std::wstring NoteAccess::Description(const frmNote& note) {
    std::wstring description = note.Text() + L"\r\n" + note.CreationTime();
    if (note.Foreground()) description += L"\r\nImmer im Vordergrund";
    return description;
}

std::wstring NoteAccess::NameOfControl(NotePart part) {
    if (part == NotePart::cmdMinimize) return L"Minimieren";
    if (part == NotePart::chkForeground) return L"Im Vordergrund ein/aus";
    return {};
}
