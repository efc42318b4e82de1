#pragma once
// What a note window tells screen readers: a name to hear ("Notiz: " and the beginning of the text), the
// whole text with its date as the description, whether it stays above others, and which of its parts has the
// keyboard.

#include <memory>
#include <string>

#include "model/NoteLayout.h"

class frmNote;

class NoteAccess {
  public:
    virtual ~NoteAccess() = default;
    virtual void Changed() = 0;             // the text, the date or a flag
    virtual void Focus(NotePart part) = 0;  // Body stands for the text

    // The note must outlive it, and be created already.
    static std::unique_ptr<NoteAccess> Of(frmNote& note);

    // What is heard of a note and of its controls.
    static std::wstring Name(const frmNote& note);
    static std::wstring Description(const frmNote& note);
    static std::wstring NameOfControl(NotePart part);  // that of its tool tip
};
