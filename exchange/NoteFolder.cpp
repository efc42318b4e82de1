#include "exchange/NoteFolder.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <sstream>
#include <vector>

#include "base/FileName.h"
#include "base/NewFile.h"
#include "base/basText.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::system_clock;
using std::chrono::milliseconds;

const wchar_t* const kExport = L".kvr";
const wchar_t* const kText = L".txt";

// What the 16 bits of a text's length can count, with room to spare.
constexpr std::size_t kLongestPiece = 65'000;
constexpr std::size_t kLongestNamedText = 40;

const std::wstring kStampForm = L"0000-00-00 00.00.00.000";

std::wstring Stamp(Clock::time_point time) {
    const std::time_t seconds = Clock::to_time_t(time);
    const auto rest = std::chrono::duration_cast<milliseconds>(time.time_since_epoch()).count() % 1000;
    const std::tm* const local = std::localtime(&seconds);
    wchar_t stamp[64] = L"";
    const std::tm parts = local ? *local : std::tm{};
    std::swprintf(stamp, std::size(stamp), L"%04d-%02d-%02d %02d.%02d.%02d.%03d", parts.tm_year + 1900,
                  parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec,
                  static_cast<int>(rest));
    return stamp;
}

// The stamp at the beginning of a name that this folder gave; empty for any other file.
std::wstring StampOf(const std::wstring& name) {
    if (name.size() < kStampForm.size() || !name.ends_with(kExport)) return {};
    for (std::size_t i = 0; i < kStampForm.size(); ++i) {
        const bool digit = name[i] >= L'0' && name[i] <= L'9';
        if (kStampForm[i] == L'0' ? !digit : name[i] != kStampForm[i]) return {};
    }
    return name.substr(0, kStampForm.size());
}

// The next stamp in the order of texts: digits count up, the marks between them stay.
std::wstring Next(std::wstring stamp) {
    for (std::size_t i = stamp.size(); i-- > 0;) {
        if (kStampForm[i] != L'0') continue;
        if (stamp[i] != L'9') {
            ++stamp[i];
            return stamp;
        }
        stamp[i] = L'0';
    }
    return stamp;
}

// Names of kept notes, the oldest first.
std::vector<std::wstring> KeptNames(const fs::path& folder) {
    std::vector<std::wstring> names;
    std::error_code failed;
    for (fs::directory_iterator file(folder, failed), end; !failed && file != end; file.increment(failed)) {
        const std::wstring name = FileName(file->path().filename());
        if (!StampOf(name).empty()) names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

// Takes as much from the text's beginning as fits one record, up to the end of a line if there is one.
std::wstring_view TakePiece(std::wstring_view& text) {
    constexpr std::wstring_view kLineEnd = L"\r\n";
    std::wstring_view piece = text.substr(0, kLongestPiece);
    std::size_t taken = piece.size();
    const std::size_t lineEnd = taken < text.size() ? piece.rfind(kLineEnd) : piece.npos;
    if (lineEnd != piece.npos && lineEnd > 0) {
        piece = piece.substr(0, lineEnd);
        taken = lineEnd + kLineEnd.size();
    }
    text.remove_prefix(taken);
    return piece;
}

std::string Records(const ExportedNote& note) {
    std::ostringstream bytes(std::ios::binary);
    ExportedNote record = note;
    std::wstring_view rest = note.Text;
    while (bytes && !rest.empty()) {
        record.Text = TakePiece(rest);
        WriteRecord(bytes, record);
    }
    if (!bytes) throw std::system_error(std::make_error_code(std::errc::value_too_large));
    return std::move(bytes).str();
}

// Writes both files of a note, or none.
std::error_code Write(const fs::path& folder, const std::wstring& name, const std::string& records,
                      const std::wstring& text) {
    const fs::path file = folder / FilePath(name + kExport), whole = folder / FilePath(name + kText);
    const bool lossy = FromAnsi(ToAnsi(text)) != text;
    if (lossy) {
        if (const std::error_code failed = WriteNewFile(whole, ToUtf8(text))) return failed;
    }
    const std::error_code failed = WriteNewFile(file, records);
    if (failed && lossy) {
        std::error_code ignored;
        fs::remove(whole, ignored);
    }
    return failed;
}

}  // namespace

void NoteFolder::Keep(const ExportedNote& note, Clock::time_point now) const {
    if (note.Text.empty()) return;
    const std::string records = Records(note);
    std::error_code ignored;
    if (fs::create_directories(folder_, ignored)) fs::permissions(folder_, fs::perms::owner_all, ignored);

    std::vector<std::wstring> names = KeptNames(folder_);
    std::wstring stamp = Stamp(now);
    // A clock that was set back must not make the newest note look like the oldest.
    if (!names.empty() && StampOf(names.back()) >= stamp) stamp = Next(StampOf(names.back()));
    const std::wstring words = NameFromText(note.Text, kLongestNamedText);
    std::wstring name = words.empty() ? stamp : stamp + L" " + words;
    std::error_code failed = Write(folder_, name, records, note.Text);
    if (failed && name != stamp) {
        // There are file systems that do not take every name.
        name = stamp;
        failed = Write(folder_, name, records, note.Text);
    }
    if (failed) throw std::system_error(failed);

    names.push_back(name + kExport);
    for (std::size_t i = 0; most_ < names.size() - i; ++i) {
        fs::path file = folder_ / FilePath(names[i]);
        fs::remove(file, ignored);
        fs::remove(file.replace_extension(kText), ignored);
    }
}
