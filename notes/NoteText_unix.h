#pragma once
// A note's text as screen readers read it: by line, sentence, word and character, and where each stands. Its
// offsets count characters, and a line break is one.

#include <atk/atk.h>

#include <string>
#include <vector>

#include "model/Note.h"
#include "model/NoteLayout.h"
#include "notes/NotePaint.h"

class NoteText {
  public:
    // In lines as the note is painted; twips of one pixel.
    NoteText(const Note& note, const NoteLayout& layout, double twipsX, double twipsY);
    NoteText(const NoteText&) = delete;
    NoteText& operator=(const NoteText&) = delete;

    int Count() const { return static_cast<int>(note_.text.size()); }
    wchar_t At(int offset) const;  // 0 outside
    // UTF-8. What lies outside is left out; an end of -1 is that of the text.
    std::string Piece(int start, int end) const;

    // Where pieces of this kind meet, from 0 to the text's end.
    std::vector<int> Boundaries(AtkTextBoundary kind) const;
    std::vector<int> Paragraphs() const;

    // In pixels of the note's window.
    wxRect PlaceOf(int offset) const;
    int OffsetAt(const wxPoint& place) const;  // -1 where there is no text

    const NoteLook& Look() const { return note_.look; }

  private:
    int Start(const PaintedLine& line) const {
        return static_cast<int>(line.text.data() - note_.text.data());
    }

    Note note_;
    std::vector<PaintedLine> lines_;
};

// What is told of the part of a note that has the keyboard.
class ReadPart {
  public:
    virtual const char* PartName() = 0;
    virtual AtkRole PartRole() = 0;
    virtual const NoteText& Text() = 0;

  protected:
    ~ReadPart() = default;
};

// Makes an object for readers out of the widget in a note's window that gets the keys; its caller owns it.
// part: asked whenever the reader asks; null when there is no note any more.
AtkObject* MakeReadPart(void* widget, ReadPart* (*part)(AtkObject* object));
