#include "exchange/KeptFile.h"

#include <bit>
#include <cstdint>
#include <sstream>
#include <string_view>

#include "base/ByteFields.h"
#include "base/basText.h"
#include "exchange/ExportFile.h"
#include "exchange/ExportedNote.h"

namespace {

constexpr std::string_view kMagic = "Kivora exact notes 1\r\n";

// A text of so many characters fits one record in every code page of single bytes.
constexpr std::size_t kLongestPiece = 65'000;
constexpr std::size_t kLongestRecordText = 0xFFFF;

// Bytes of a note without text and time: two lengths, four places, three numbers, four flags.
constexpr std::size_t kSmallestNote = 2 * 4 + 4 * 8 + 3 * 4 + 4 * 2;
constexpr std::size_t kSumBytes = 8;

// The text's beginning as far as it fits a record.
std::wstring_view Fitting(std::wstring_view text) {
    text = text.substr(0, kLongestPiece);
    while (ToAnsi(text).size() > kLongestRecordText) text.remove_suffix(text.size() / 2);
    return text;
}

// Takes as much from the text's beginning as fits one record, up to the end of a line if there is one.
std::wstring_view TakePiece(std::wstring_view& text) {
    constexpr std::wstring_view kLineEnd = L"\r\n";
    std::wstring_view piece = Fitting(text);
    std::size_t taken = piece.size();
    const std::size_t lineEnd = taken < text.size() ? piece.rfind(kLineEnd) : piece.npos;
    if (lineEnd != piece.npos && lineEnd > 0) {
        piece = piece.substr(0, lineEnd);
        taken = lineEnd + kLineEnd.size();
    }
    text.remove_prefix(taken);
    return piece;
}

void WriteRecords(std::ostream& file, const Note& note) {
    ExportedNote record = ToRecord(note);
    record.CreationTime = Fitting(record.CreationTime);
    for (std::wstring_view rest = note.text; !rest.empty();) {
        record.Text = TakePiece(rest);
        WriteRecord(file, record);
    }
}

void AddNote(std::string& bytes, const Note& note) {
    AddText(bytes, note.text);
    AddText(bytes, note.creationTime);
    const NotePlace& place = note.place;
    for (const double twips : {place.left, place.top, place.width, place.height})
        AddNumber(bytes, std::bit_cast<std::uint64_t>(twips));
    const NoteLook& look = note.look;
    for (const std::int32_t number : {look.color, look.alignment, look.size})
        AddNumber(bytes, static_cast<std::uint32_t>(number));
    for (const bool flag : {look.bold, look.italic, look.underlined, note.foreground})
        AddNumber(bytes, static_cast<std::uint16_t>(flag ? 0xFFFF : 0));
}

class AppendixReader : public FieldReader {
  public:
    using FieldReader::FieldReader;

    Note TakeNote();

  private:
    // A place beyond what a record can name is nobody's.
    double Twips() {
        const auto twips = std::bit_cast<double>(Take<std::uint64_t>());
        return twips >= INT32_MIN && twips <= INT32_MAX ? twips : 0;
    }
    std::int32_t Integer() { return static_cast<std::int32_t>(Take<std::uint32_t>()); }
    bool Flag() { return Take<std::uint16_t>() != 0; }
};

Note AppendixReader::TakeNote() {
    Note note;
    note.text = Text();
    note.creationTime = Text();
    NotePlace& place = note.place;
    for (double* const twips : {&place.left, &place.top, &place.width, &place.height}) *twips = Twips();
    NoteLook& look = note.look;
    for (std::int32_t* const number : {&look.color, &look.alignment, &look.size}) *number = Integer();
    for (bool* const flag : {&look.bold, &look.italic, &look.underlined, &note.foreground}) *flag = Flag();
    return note;
}

// Passes over the records and the empty one behind them; false when no appendix follows.
bool PassRecords(std::istream& file) {
    ExportReader reader(file);
    std::size_t records = 0;
    while (!reader.PassOver(1).empty()) {
        if (!file || ++records > kMostRecords) return false;
    }
    std::string magic(kMagic.size(), '\0');
    return file.read(magic.data(), static_cast<std::streamsize>(magic.size())) && magic == kMagic;
}

// All bytes of the stream; nothing for more than are read from a kept file.
std::optional<std::string> Whole(std::istream& file) {
    file.seekg(0, std::ios::end);
    const std::streamoff size = file.tellg();
    if (!file || size < 0 || static_cast<std::uint64_t>(size) > kMostKeptBytes) return std::nullopt;
    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.seekg(0);
    if (!file.read(bytes.data(), size)) return std::nullopt;
    return bytes;
}

}  // namespace

std::string KeptFileBytes(const std::vector<Note>& notes) {
    std::ostringstream records(std::ios::binary);
    for (const Note& note : notes) WriteRecords(records, note);
    WriteRecord(records, {});
    std::string bytes = std::move(records).str();
    bytes += kMagic;
    AddNumber(bytes, static_cast<std::uint32_t>(notes.size()));
    for (const Note& note : notes) AddNote(bytes, note);
    AddNumber(bytes, CheckSum(bytes));
    return bytes;
}

std::optional<std::vector<Note>> ExactNotes(std::istream& file) {
    if (!PassRecords(file)) return std::nullopt;
    const auto begin = static_cast<std::size_t>(std::streamoff(file.tellg()));
    const std::optional<std::string> bytes = Whole(file);
    if (!bytes || begin > bytes->size()) return std::nullopt;
    AppendixReader reader(std::string_view(*bytes).substr(begin));
    const auto count = reader.Take<std::uint32_t>();
    if (count > reader.Left() / kSmallestNote) return std::nullopt;
    std::vector<Note> notes;
    for (std::uint32_t i = 0; i < count && reader.Complete(); ++i) notes.push_back(reader.TakeNote());
    const std::string_view summed = std::string_view(*bytes).substr(0, bytes->size() - reader.Left());
    const bool right = reader.Take<std::uint64_t>() == CheckSum(summed);
    if (!reader.Complete() || !right) return std::nullopt;
    return notes;
}

std::vector<Note> NotesOfKeptFile(std::istream& file) {
    if (std::optional<std::vector<Note>> exact = ExactNotes(file)) return *std::move(exact);
    file.clear();
    file.seekg(0);
    std::vector<Note> notes;
    ExportReader reader(file);
    while (notes.size() < kMostRecords) {
        const ExportedNote record = reader.Next();
        if (record.Text.empty()) break;
        notes.push_back(ToNote(record));
    }
    return notes;
}
