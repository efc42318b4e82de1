#pragma once
// What a note window tells screen readers: a name to hear ("Notiz: " and the beginning of the text), the date
// and whether it stays above others as the description, the whole text, and which of its parts has the
// keyboard.

#include <wx/frame.h>

#include <memory>
#include <string>

#include "model/Note.h"
#include "model/NoteLayout.h"

// What a note window is asked for.
class ReadableNote {
  public:
    virtual const Note& Content() const = 0;
    virtual const NoteLayout& Layout() const = 0;
    // The part that has the keyboard; Body stands for the text.
    virtual NotePart Focus() const = 0;
    // Presses a control; opens the note in its dialog where the part is none.
    virtual void PressPart(NotePart part) = 0;

  protected:
    ~ReadableNote() = default;
};

class NoteAccess {
  public:
    virtual ~NoteAccess() = default;
    virtual void Changed() = 0;             // the text, the date or a flag
    virtual void Focus(NotePart part) = 0;  // Body stands for the text

    // The window and its note, which are one; it must outlive this object, and be created already.
    static std::unique_ptr<NoteAccess> Of(wxFrame& window, ReadableNote& note);

    // What is heard of a note and of its controls.
    static std::wstring Name(const Note& note);
    static std::wstring Description(const Note& note);
    static std::wstring NameOfControl(NotePart part);  // that of its tool tip; empty for other parts
};
