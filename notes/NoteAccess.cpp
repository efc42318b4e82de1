#include "notes/NoteAccess.h"

std::wstring NoteAccess::Name(const Note& note) { return L"Notiz: " + ShortText(note.text); }

std::wstring NoteAccess::Description(const Note& note) {
    std::wstring description = note.creationTime;
    if (note.foreground) description += L"\r\nImmer im Vordergrund";
    return description;
}

std::wstring NoteAccess::NameOfControl(NotePart part) {
    if (part == NotePart::cmdMinimize) return L"Minimieren";
    if (part == NotePart::chkForeground) return L"Im Vordergrund ein/aus";
    return {};
}
