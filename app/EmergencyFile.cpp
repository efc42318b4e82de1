#include "app/EmergencyFile.h"

#include <algorithm>
#include <cinttypes>
#include <cwchar>
#include <map>
#include <tuple>

#include "base/ByteFields.h"
#include "base/DataFolder.h"
#include "base/FileName.h"
#include "base/NewFile.h"
#include "base/Text.h"
#include "exchange/KeptFile.h"
#include "model/KeepReason.h"
#include "registry/clsRegistry.h"

namespace fs = std::filesystem;

namespace {

// The file ends in the length of what follows the notes and this mark, so it is found from behind.
constexpr std::string_view kMark = " Kivora unsaved 2\r\n";
constexpr std::size_t kLengthBytes = 4, kSumBytes = 8;
constexpr int kMostFiles = 1000;

// What makes two notes the same one, wherever they stand.
auto Identity(const Note& note) {
    return std::tuple(note.text, note.creationTime, note.look, note.foreground);
}

Note AsReadBack(Note note) {
    note.text = ::AsReadBack(note.text);
    note.creationTime = ::AsReadBack(note.creationTime);
    return note;
}

// Programs that keep their notes at different places do not take in each other's files.
std::wstring NameStart() {
    const std::uint64_t hash = CheckSum(ToUtf8(FileName(DataFolder())));
    wchar_t name[40] = L"";
    std::swprintf(name, std::size(name), L"kivora-ungespeichert-%" PRIx64 L"-", hash);
    return name;
}
const wchar_t* const kNameEnd = L".kvr";

std::wstring Numbered(int number) {
    wchar_t digits[12] = L"";
    std::swprintf(digits, std::size(digits), L"%03d", number);
    return digits;
}

}  // namespace

std::string EmergencyBytes(const UnsavedImage& image) {
    std::string bytes = KeptFileBytes(image.notes), rest;
    AddNumber<std::uint8_t>(rest, image.stored.has_value());
    AddNumber(rest, image.stored.value_or(0));
    AddNumber<std::uint8_t>(rest, image.autostart);
    AddNumber(rest, static_cast<std::uint32_t>(image.entries.size()));
    for (const clsAddressBookEntry& entry : image.entries) {
        for (const std::wstring* text : {&entry.PCName(), &entry.IP(), &entry.Comment()})
            AddText(rest, *text);
    }
    AddNumber(rest, static_cast<std::uint32_t>(image.files.size()));
    for (const std::wstring& file : image.files) {
        const std::string name = FileNameBytes(file);
        AddNumber(rest, static_cast<std::uint32_t>(name.size()));
        rest += name;
    }
    AddNumber(rest, CheckSum(rest));
    bytes += rest;
    AddNumber(bytes, static_cast<std::uint32_t>(rest.size()));
    bytes += kMark;
    return bytes;
}

std::optional<UnsavedImage> ReadEmergencyBytes(const std::string& bytes) {
    std::string_view notes = bytes;
    if (!notes.ends_with(kMark) || notes.size() < kLengthBytes + kMark.size()) return std::nullopt;
    notes.remove_suffix(kMark.size());
    const auto length = FieldReader(notes.substr(notes.size() - kLengthBytes)).Take<std::uint32_t>();
    notes.remove_suffix(kLengthBytes);
    if (length > notes.size() || length < kSumBytes) return std::nullopt;
    const std::string_view rest = notes.substr(notes.size() - length, length - kSumBytes);
    const std::string_view sum = notes.substr(notes.size() - kSumBytes);
    notes.remove_suffix(length);
    if (FieldReader(sum).Take<std::uint64_t>() != CheckSum(rest)) return std::nullopt;

    ByteSource file = ByteSource::OfMemory(notes);
    std::optional<std::vector<Note>> exact = ExactNotes(file);
    if (!exact) return std::nullopt;
    UnsavedImage image;
    image.notes = *std::move(exact);
    FieldReader fields(rest);
    const bool isStored = fields.Take<std::uint8_t>() != 0;
    const auto stored = fields.Take<std::uint64_t>();
    if (isStored) image.stored = stored;
    image.autostart = fields.Take<std::uint8_t>() != 0;
    for (auto count = fields.Take<std::uint32_t>(); count > 0 && fields.Complete(); --count) {
        const std::wstring name = fields.Text(), ip = fields.Text(), comment = fields.Text();
        image.entries.emplace_back(name, ip, comment);
    }
    for (auto count = fields.Take<std::uint32_t>(); count > 0 && fields.Complete(); --count) {
        image.files.push_back(FileNameOfBytes(fields.Bytes(fields.Take<std::uint32_t>())));
    }
    if (!fields.Complete()) return std::nullopt;
    return image;
}

Takeover TakeoverOf(const std::vector<Note>& there, const std::vector<Note>& notes, bool replaces) {
    std::multimap<decltype(Identity(Note())), std::size_t> left;
    for (std::size_t i = 0; i < there.size(); ++i) left.emplace(Identity(there[i]), i);
    Takeover takeover;
    for (const Note& note : notes) {
        auto same = left.find(Identity(note));
        if (same == left.end()) same = left.find(Identity(AsReadBack(note)));
        if (same != left.end()) {
            takeover.same.emplace_back(same->second, note);
            left.erase(same);
        } else {
            takeover.added.push_back(note);
        }
    }
    if (replaces)
        for (const auto& [identity, index] : left) takeover.gone.push_back(index);
    return takeover;
}

KeepResult WriteEmergencyFile(const UnsavedImage& image, const std::vector<fs::path>& folders) {
    const std::string bytes = EmergencyBytes(image);
    const std::wstring start = NameStart();
    KeepResult result{KeepFailure::NoAccess};
    for (const fs::path& folder : folders) {
        if (!IsPrivateFolder(folder)) continue;
        std::error_code failed = std::make_error_code(std::errc::file_exists);
        for (int number = 0; failed == std::errc::file_exists && number < kMostFiles; ++number)
            failed = WriteNewFile(folder / FilePath(start + Numbered(number) + kNameEnd), bytes);
        result = FailureOf(failed);
        if (result.Kept()) break;
    }
    return result;
}

std::vector<fs::path> EmergencyFiles(const std::vector<fs::path>& folders) {
    std::vector<fs::path> files;
    const std::wstring start = NameStart();
    for (const fs::path& folder : folders) {
        std::error_code failed;
        if (!fs::exists(folder, failed) || !IsPrivateFolder(folder)) continue;
        std::vector<fs::path> found;
        for (fs::directory_iterator file(folder, failed), end; !failed && file != end;
             file.increment(failed)) {
            const std::wstring name = FileName(file->path().filename());
            if (name.starts_with(start) && name.ends_with(kNameEnd)) found.push_back(file->path());
        }
        std::sort(found.begin(), found.end());
        files.insert(files.end(), found.begin(), found.end());
    }
    return files;
}
