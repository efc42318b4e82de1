#pragma once
// One note as it stands in an export file. The file is nothing but such records, one after the other; an empty
// text is the only sign of its end.

#include <cstdint>
#include <istream>
#include <string>

struct ExportedNote {
    std::wstring Text;
    std::wstring CreationTime;
    std::int32_t Left = 0, Top = 0, Width = 0, Height = 0;  // twips
    std::int32_t Color = 0;
    std::int32_t FontNoteAlignment = 0;
    std::int32_t FontNoteSize = 0;  // points
    bool FontNoteBold = false, FontNoteItalic = false, FontNoteUnderlined = false;
    bool Foreground = false;

    bool operator==(const ExportedNote&) const = default;
};

// Reads records one after the other. What lies behind the end of the file reads as zeros, so the reader always
// delivers a record; with an empty text it was the last.
class ExportReader {
  public:
    explicit ExportReader(std::istream& file) : file_(file) {}
    ExportedNote Next();

  private:
    std::istream& file_;
};
