#include "exchange/KeptFile.h"

#include <bit>
#include <cstdint>
#include <map>
#include <string_view>

#include "base/ByteFields.h"
#include "base/Text.h"
#include "exchange/ExportedNote.h"
#include "model/NoteValues.h"

namespace {

constexpr std::string_view kMagic = "Kivora exact notes 1\r\n";

// A text of so many characters fits one record in every code page of single bytes.
constexpr std::size_t kLongestPiece = 65'000;
constexpr std::size_t kLongestRecordText = 0xFFFF;

// What stands before a value: a text or a number follows.
constexpr std::uint8_t kText = 1, kNumber = 2;

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

void WriteRecords(std::string& file, const Note& note) {
    ExportedNote record = ToRecord(note);
    record.CreationTime = Fitting(record.CreationTime);
    for (std::wstring_view rest = note.text; !rest.empty();) {
        record.Text = TakePiece(rest);
        WriteRecord(file, record);
    }
}

// Adds values with their names.
struct ValueWriter {
    std::string& bytes;
    std::uint8_t& count;

    void operator()(const wchar_t* name, const std::wstring& text) const {
        AddText(bytes, name);
        AddNumber(bytes, kText);
        AddText(bytes, text);
        ++count;
    }
    void operator()(const wchar_t* name, double number) const {
        AddText(bytes, name);
        AddNumber(bytes, kNumber);
        AddNumber(bytes, std::bit_cast<std::uint64_t>(number));
        ++count;
    }
};

void AddNote(std::string& bytes, const Note& note) {
    std::string values;
    std::uint8_t count = 0;
    EachValue(note, ValueWriter{values, count});
    AddNumber(bytes, count);
    bytes += values;
}

// Values by their names, as they stand in a file. Those that are missing leave what a new note has, and those
// of other names are passed over: they belong to another version of the program.
struct ValueReader {
    std::map<std::wstring, std::wstring> texts;
    std::map<std::wstring, double> numbers;

    void operator()(const wchar_t* name, std::wstring& text) const {
        if (const auto found = texts.find(name); found != texts.end()) text = found->second;
    }
    template <class Number>
    void operator()(const wchar_t* name, Number& number) const {
        if (const auto found = numbers.find(name); found != numbers.end())
            number = static_cast<Number>(found->second);
    }
};

// Nothing where the values are none.
std::optional<Note> TakeNote(FieldReader& fields) {
    ValueReader read;
    for (auto count = fields.Take<std::uint8_t>(); count > 0 && fields.Complete(); --count) {
        const std::wstring name = fields.Text();
        const auto kind = fields.Take<std::uint8_t>();
        if (kind == kText) {
            read.texts[name] = fields.Text();
        } else if (kind == kNumber) {
            // No value is beyond what 32 bits can name.
            const auto number = std::bit_cast<double>(fields.Take<std::uint64_t>());
            read.numbers[name] = number >= INT32_MIN && number <= INT32_MAX ? number : 0;
        } else {
            return std::nullopt;
        }
    }
    Note note;
    EachValue(note, read);
    return note;
}

// Passes over the records and the empty one behind them; false when no appendix follows.
bool PassRecords(ByteSource& file) {
    ExportReader reader(file);
    std::size_t records = 0;
    while (!reader.PassOver(1).empty()) {
        if (++records > kMostRecords) return false;
    }
    return file.Read(kMagic.size()) == kMagic;
}

}  // namespace

std::string KeptFileBytes(const std::vector<Note>& notes) {
    std::string bytes;
    for (const Note& note : notes) WriteRecords(bytes, note);
    WriteRecord(bytes, {});
    bytes += kMagic;
    AddNumber(bytes, static_cast<std::uint32_t>(notes.size()));
    for (const Note& note : notes) AddNote(bytes, note);
    AddNumber(bytes, CheckSum(bytes));
    return bytes;
}

std::optional<std::vector<Note>> ExactNotes(ByteSource& file) {
    if (!PassRecords(file)) return std::nullopt;
    const auto begin = static_cast<std::size_t>(file.Place());
    if (file.Size() > kMostKeptBytes) return std::nullopt;
    file.Rewind();
    const std::string bytes = file.ReadRest();
    if (bytes.size() < file.Size()) return std::nullopt;
    FieldReader reader(std::string_view(bytes).substr(begin));
    std::vector<Note> notes;
    for (auto count = reader.Take<std::uint32_t>(); count > 0 && reader.Complete(); --count) {
        std::optional<Note> note = TakeNote(reader);
        if (!note) return std::nullopt;
        notes.push_back(*std::move(note));
    }
    const std::string_view summed = std::string_view(bytes).substr(0, bytes.size() - reader.Left());
    const bool right = reader.Take<std::uint64_t>() == CheckSum(summed);
    if (!reader.Complete() || !right) return std::nullopt;
    return notes;
}

std::vector<Note> NotesOfKeptFile(ByteSource& file) {
    if (std::optional<std::vector<Note>> exact = ExactNotes(file)) return *std::move(exact);
    file.Rewind();
    std::vector<Note> notes;
    ExportReader reader(file);
    while (notes.size() < kMostRecords) {
        const ExportedNote record = reader.Next();
        if (record.Text.empty()) break;
        notes.push_back(ToNote(record));
    }
    return notes;
}
