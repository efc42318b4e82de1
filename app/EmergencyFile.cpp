#include "app/EmergencyFile.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <sstream>

#include "base/DataFolder.h"
#include "base/FileName.h"
#include "base/NewFile.h"
#include "base/Text.h"
#include "exchange/KeptFile.h"
#include "model/KeepReason.h"

namespace fs = std::filesystem;

namespace {

// The file ends in the length of what follows the notes and this mark, so it is found from behind.
constexpr std::string_view kMark = " Kivora unsaved 1\r\n";
constexpr std::size_t kLengthDigits = 10;
constexpr int kMostFiles = 1000;

void AddField(std::string& bytes, std::string_view field) {
    bytes += std::to_string(field.size());
    bytes += ':';
    bytes += field;
}

// Takes a field from the beginning; nothing where there is none.
std::optional<std::string_view> TakeField(std::string_view& bytes) {
    std::size_t length = 0;
    const auto [end, error] = std::from_chars(bytes.data(), bytes.data() + bytes.size(), length);
    const auto digits = static_cast<std::size_t>(end - bytes.data());
    if (error != std::errc() || digits >= bytes.size() || *end != ':' || length > bytes.size() - digits - 1)
        return std::nullopt;
    const std::string_view field = bytes.substr(digits + 1, length);
    bytes.remove_prefix(digits + 1 + length);
    return field;
}

// Programs that keep their notes at different places do not take in each other's files.
std::string NameStart() {
    std::uint64_t hash = 0xCBF29CE484222325;  // FNV-1a
    for (const char byte : ToUtf8(FileName(DataFolder())))
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001B3;
    char hex[17] = "";
    const auto end = std::to_chars(hex, hex + 16, hash, 16);
    return "kivora-ungespeichert-" + std::string(hex, end.ptr) + "-";
}

std::string Digits(std::size_t number, std::size_t count) {
    const std::string digits = std::to_string(number);
    return std::string(count - std::min(count, digits.size()), '0') + digits;
}

}  // namespace

std::string EmergencyBytes(const UnsavedImage& image) {
    std::string bytes = KeptFileBytes(image.notes);
    const std::size_t before = bytes.size();
    AddField(bytes, image.autostart ? "1" : "0");
    for (const clsAddressBookEntry& entry : image.entries) {
        for (const std::wstring* text : {&entry.PCName(), &entry.IP(), &entry.Comment()})
            AddField(bytes, ToUtf8(*text));
    }
    bytes += Digits(bytes.size() - before, kLengthDigits);
    bytes += kMark;
    return bytes;
}

std::optional<UnsavedImage> ReadEmergencyBytes(const std::string& bytes) {
    std::string_view rest = bytes;
    if (!rest.ends_with(kMark)) return std::nullopt;
    rest.remove_suffix(kMark.size());
    if (rest.size() < kLengthDigits) return std::nullopt;
    std::size_t length = 0;
    const char* const digits = rest.data() + rest.size() - kLengthDigits;
    std::from_chars(digits, digits + kLengthDigits, length);
    rest.remove_suffix(kLengthDigits);
    if (length > rest.size()) return std::nullopt;
    std::string_view fields = rest.substr(rest.size() - length);

    std::istringstream file(bytes.substr(0, rest.size() - length), std::ios::binary);
    std::optional<std::vector<Note>> notes = ExactNotes(file);
    const auto autostart = TakeField(fields);
    if (!notes || !autostart) return std::nullopt;
    UnsavedImage image{*autostart == "1", *std::move(notes), {}};
    while (!fields.empty()) {
        clsAddressBookEntry entry;
        const auto name = TakeField(fields), ip = TakeField(fields), comment = TakeField(fields);
        if (!name || !ip || !comment) return std::nullopt;
        entry.PCName(FromUtf8(*name));
        entry.IP(FromUtf8(*ip));
        entry.Comment(FromUtf8(*comment));
        image.entries.push_back(std::move(entry));
    }
    return image;
}

KeepResult WriteEmergencyFile(const UnsavedImage& image, const std::vector<fs::path>& folders) {
    const std::string bytes = EmergencyBytes(image), start = NameStart();
    KeepResult result{KeepFailure::NoAccess};
    for (const fs::path& folder : folders) {
        if (!IsPrivateFolder(folder)) continue;
        std::error_code failed = std::make_error_code(std::errc::file_exists);
        for (int number = 0; failed == std::errc::file_exists && number < kMostFiles; ++number)
            failed =
                WriteNewFile(folder / (start + Digits(static_cast<std::size_t>(number), 3) + ".kvr"), bytes);
        result = FailureOf(failed);
        if (result.Kept()) break;
    }
    return result;
}

std::vector<fs::path> EmergencyFiles(const std::vector<fs::path>& folders) {
    std::vector<fs::path> files;
    const std::string start = NameStart();
    for (const fs::path& folder : folders) {
        std::error_code failed;
        if (!fs::exists(folder, failed) || !IsPrivateFolder(folder)) continue;
        std::vector<fs::path> found;
        for (fs::directory_iterator file(folder, failed), end; !failed && file != end;
             file.increment(failed)) {
            const std::string name = ToUtf8(FileName(file->path().filename()));
            if (name.starts_with(start) && name.ends_with(".kvr")) found.push_back(file->path());
        }
        std::sort(found.begin(), found.end());
        files.insert(files.end(), found.begin(), found.end());
    }
    return files;
}
