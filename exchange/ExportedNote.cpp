#include "exchange/ExportedNote.h"

#include "base/basText.h"

std::string ExportReader::Bytes(std::size_t count) {
    std::string bytes(count, '\0');
    if (file_) file_.read(bytes.data(), static_cast<std::streamsize>(count));
    return bytes;
}

std::uint32_t ExportReader::Number(std::size_t bytes) {
    const std::string littleEndian = Bytes(bytes);
    std::uint32_t number = 0;
    for (std::size_t i = bytes; i-- > 0;) number = number << 8 | static_cast<unsigned char>(littleEndian[i]);
    return number;
}

std::wstring ExportReader::Text() { return FromAnsi(Bytes(Number(2))); }

ExportedNote ExportReader::Next() {
    ExportedNote note;
    note.Text = Text();
    note.CreationTime = Text();
    note.Left = Integer();
    note.Top = Integer();
    note.Width = Integer();
    note.Height = Integer();
    note.Color = Integer();
    note.FontNoteAlignment = Integer();
    note.FontNoteSize = Integer();
    note.FontNoteBold = Boolean();
    note.FontNoteItalic = Boolean();
    note.FontNoteUnderlined = Boolean();
    note.Foreground = Boolean();
    return note;
}
