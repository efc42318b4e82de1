#pragma once
// One note as it stands in an export file. The file is nothing but such records, one after the other; an
// empty text is the only sign of its end.

#include <cstdint>
#include <string>

#include "base/ByteSource.h"
#include "model/Note.h"

// A file holds no more notes than this; what lies behind them is not looked at.
constexpr std::size_t kMostRecords = 250'000;

struct ExportedNote {
    std::wstring Text = {};
    std::wstring CreationTime = {};
    std::int32_t Left = 0, Top = 0, Width = 0, Height = 0;  // twips
    std::int32_t Color = 0;
    std::int32_t FontNoteAlignment = 0;
    std::int32_t FontNoteSize = 0;  // points
    bool FontNoteBold = false, FontNoteItalic = false, FontNoteUnderlined = false;
    bool Foreground = false;

    bool operator==(const ExportedNote&) const = default;
};

// The record of a note, its place in whole twips, and the note of a record. A text ends at its first NUL in a
// note: windows show no more of it, and the registry gives no more back.
ExportedNote ToRecord(const Note& note);
Note ToNote(const ExportedNote& record);

// Reads records one after the other, each byte once. What lies behind the end of the file reads as zeros, so
// the reader always delivers a record; with an empty text it was the last. Of a text that the file breaks
// off, the missing characters are NULs.
class ExportReader {
  public:
    // The source has to outlive the reader.
    explicit ExportReader(ByteSource& file) : file_(file) {}
    ExportedNote Next();

    // Passes over a record and gives only its text, of that no more than so many characters. The cost does
    // not grow with what the record holds beyond them.
    std::wstring PassOver(std::size_t characters);

  private:
    std::string Bytes(std::size_t count);
    std::uint32_t Number(std::size_t bytes);
    std::int32_t Integer() { return static_cast<std::int32_t>(Number(4)); }
    bool Boolean() { return Number(2) != 0; }
    std::wstring Text();

    ByteSource& file_;
};

// Adds the record. False for a text whose bytes the 16 bits of its length cannot count; of such a note
// nothing is added.
bool WriteRecord(std::string& file, const ExportedNote& note);
