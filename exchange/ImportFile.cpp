#include "exchange/ImportFile.h"

#include <algorithm>

#include "base/DateText.h"
#include "base/FileName.h"
#include "base/Text.h"
#include "exchange/ExportedNote.h"
#include "exchange/KeptFile.h"

namespace {

using Notes = std::vector<Note>;

bool IsTextFile(const std::filesystem::path& path) {
    std::wstring ending = FileName(path.extension());
    for (wchar_t& c : ending) c = c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
    return ending == L".txt";
}

// What is not read record by record: the notes of a kept file or of a text file, and those of a file that
// cannot be read. Nothing for any other; then the file stands at its beginning.
std::optional<ReadNotes> NotesAsAWhole(const std::filesystem::path& path, ByteSource& file) {
    if (file.Failure()) return ReadNotes{};
    // So have files in which the kernel answers; some of them wait for what there is to say.
    if (file.Size() == 0) return ReadNotes{.notes = {}, .complete = true};
    if (IsTextFile(path)) {
        if (file.Size() > kMostTextFileBytes) return ReadNotes{};
        const std::string bytes = file.ReadRest();
        if (file.Failure()) return ReadNotes{};
        return ReadNotes{.notes = bytes.empty() ? Notes() : Notes{NoteOfText(bytes)}, .complete = true};
    }
    std::optional<Notes> notes = ExactNotes(file);
    if (notes) return ReadNotes{.notes = *std::move(notes), .complete = true};
    file.Rewind();
    return std::nullopt;
}

// Collects notes as long as they are not too many.
class Collector {
  public:
    bool Add(Note note) {
        characters_ += note.text.size() + note.creationTime.size();
        if (read_.notes.size() == kMostImportedNotes || characters_ > kMostImportedCharacters) {
            read_.notes.clear();
            return false;
        }
        read_.notes.push_back(std::move(note));
        return true;
    }
    ReadNotes Take(bool complete) {
        read_.complete = complete;
        return std::move(read_);
    }

  private:
    ReadNotes read_;
    std::size_t characters_ = 0;
};

ReadNotes ReadRecords(ByteSource& file, std::size_t count, const std::function<bool(std::size_t)>& wanted) {
    Collector collector;
    ExportReader reader(file);
    for (std::size_t i = 0; i < count; ++i) {
        if (!wanted(i)) {
            if (reader.PassOver(1).empty()) break;
            continue;
        }
        const ExportedNote record = reader.Next();
        if (file.Failure() || record.Text.empty()) break;
        if (!collector.Add(ToNote(record))) return collector.Take(false);
    }
    ReadNotes read = collector.Take(!file.Failure());
    read.records = true;
    return read;
}

}  // namespace

Note NoteOfText(std::string_view bytes) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    std::wstring text = FromUtf8(bytes);
    if (ToUtf8(text) != bytes) {
        text = FromAnsi(bytes);
    } else if (bytes.starts_with(kMark)) {
        text.erase(0, 1);
    }
    return {.text = AsNoteText(std::move(text)), .creationTime = CurrentCreationTime()};
}

std::vector<std::wstring> ListNotes(const std::filesystem::path& path) {
    std::vector<std::wstring> texts;
    ByteSource file = ByteSource::OfFile(path);
    if (const std::optional<ReadNotes> whole = NotesAsAWhole(path, file)) {
        for (const Note& note : whole->notes)
            texts.push_back(Flattened(note.text.substr(0, kListedCharacters)));
        return texts;
    }
    ExportReader reader(file);
    while (texts.size() < kMostRecords) {
        const std::wstring text = reader.PassOver(kListedCharacters);
        if (text.empty()) break;
        texts.push_back(Flattened(text));
    }
    return texts;
}

std::optional<Note> NoteAt(const std::filesystem::path& path, std::size_t index) {
    const ReadNotes read = ReadNotesOf(path, index + 1, [&](std::size_t each) { return each == index; });
    if (read.notes.empty()) return std::nullopt;
    return read.notes.front();
}

ReadNotes ReadNotesOf(const std::filesystem::path& path, std::size_t count,
                      const std::function<bool(std::size_t)>& wanted) {
    count = std::min(count, kMostRecords);
    ByteSource file = ByteSource::OfFile(path);
    const std::optional<ReadNotes> whole = NotesAsAWhole(path, file);
    if (!whole) return ReadRecords(file, count, wanted);
    Collector collector;
    for (std::size_t i = 0; i < std::min(count, whole->notes.size()); ++i) {
        if (wanted(i) && !collector.Add(whole->notes[i])) return collector.Take(false);
    }
    return collector.Take(whole->complete);
}
