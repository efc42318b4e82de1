#include "exchange/ExportedNote.h"

#include <algorithm>

#include "base/ByteFields.h"
#include "base/Text.h"
#include "base/twips.h"

namespace {

constexpr std::size_t kLongestText = 0xFFFF;
constexpr std::size_t kTail = 7 * 4 + 4 * 2;

std::wstring UpToNul(const std::wstring& text) { return text.substr(0, text.find(L'\0')); }

}  // namespace

ExportedNote ToRecord(const Note& note) {
    return {.Text = note.text,
            .CreationTime = note.creationTime,
            .Left = RoundToEven(note.place.left),
            .Top = RoundToEven(note.place.top),
            .Width = RoundToEven(note.place.width),
            .Height = RoundToEven(note.place.height),
            .Color = note.look.color,
            .FontNoteAlignment = note.look.alignment,
            .FontNoteSize = note.look.size,
            .FontNoteBold = note.look.bold,
            .FontNoteItalic = note.look.italic,
            .FontNoteUnderlined = note.look.underlined,
            .Foreground = note.foreground};
}

Note ToNote(const ExportedNote& record) {
    return {.text = UpToNul(record.Text),
            .creationTime = UpToNul(record.CreationTime),
            .look = {.size = record.FontNoteSize,
                     .bold = record.FontNoteBold,
                     .italic = record.FontNoteItalic,
                     .underlined = record.FontNoteUnderlined,
                     .alignment = record.FontNoteAlignment,
                     .color = record.Color},
            .place = {.left = double(record.Left),
                      .top = double(record.Top),
                      .width = double(record.Width),
                      .height = double(record.Height)},
            .foreground = record.Foreground};
}

std::string ExportReader::Bytes(std::size_t count) {
    std::string bytes = file_.Read(count);
    bytes.resize(count);
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

std::wstring ExportReader::PassOver(std::size_t characters) {
    const std::size_t length = Number(2);
    const std::size_t wanted = std::min(length, characters);
    std::wstring text = FromAnsi(Bytes(wanted));
    file_.Pass(length - wanted);
    file_.Pass(Number(2) + kTail);
    return text;
}

bool WriteRecord(std::string& file, const ExportedNote& note) {
    std::string record;
    for (const std::wstring* text : {&note.Text, &note.CreationTime}) {
        const std::string bytes = ToAnsi(*text);
        if (bytes.size() > kLongestText) return false;
        AddNumber(record, static_cast<std::uint16_t>(bytes.size()));
        record += bytes;
    }
    for (const std::int32_t number : {note.Left, note.Top, note.Width, note.Height, note.Color,
                                      note.FontNoteAlignment, note.FontNoteSize}) {
        AddNumber(record, static_cast<std::uint32_t>(number));
    }
    for (const bool flag :
         {note.FontNoteBold, note.FontNoteItalic, note.FontNoteUnderlined, note.Foreground}) {
        AddNumber<std::uint16_t>(record, flag ? 0xFFFF : 0);
    }
    file += record;
    return true;
}
