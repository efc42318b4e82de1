#include "exchange/NoteFolder.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/FileName.h"
#include "base/NewFile.h"
#include "base/Text.h"
#include "exchange/KeptFile.h"

namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::system_clock;

const wchar_t* const kExport = L".kvr";
const wchar_t* const kText = L".txt";  // what earlier versions put beside an export file

constexpr std::size_t kLongestNamedText = 40;

const std::wstring kStampForm = L"0000-00-00 00.00.00.000";

std::wstring Stamp(Clock::time_point time) {
    // Rounded down, so that the milliseconds count up before 1970, too.
    const auto whole = std::chrono::floor<std::chrono::seconds>(time);
    const auto rest = std::chrono::floor<std::chrono::milliseconds>(time - whole).count();
    const std::time_t seconds = Clock::to_time_t(whole);
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

// Names of kept notes, the oldest first; as far as the folder can be looked through.
std::vector<std::wstring> KeptNames(const fs::path& folder, std::error_code& failed) {
    std::vector<std::wstring> names;
    for (fs::directory_iterator file(folder, failed), end; !failed && file != end; file.increment(failed)) {
        const std::wstring name = FileName(file->path().filename());
        if (!StampOf(name).empty()) names.push_back(name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::vector<std::wstring> KeptNames(const fs::path& folder) {
    std::error_code ignored;
    return KeptNames(folder, ignored);
}

fs::path TextBeside(fs::path file) { return file.replace_extension(kText); }

}  // namespace

bool NoteFolder::Holds(const Note& note) const {
    const std::wstring words = NameFromText(note.text, kLongestNamedText);
    for (const std::wstring& name : KeptNames(folder_)) {
        if (!name.ends_with(words + kExport)) continue;
        ByteSource file = ByteSource::OfFile(folder_ / FilePath(name));
        const std::optional<std::vector<Note>> kept = ExactNotes(file);
        if (kept && kept->size() == 1 && kept->front().text == note.text &&
            kept->front().creationTime == note.creationTime)
            return true;
    }
    return false;
}

void NoteFolder::Keep(const Note& note, Clock::time_point now) const { KeepTogether({note}, now); }

void NoteFolder::KeepTogether(const std::vector<Note>& notes, Clock::time_point now) const {
    const auto written =
        std::find_if(notes.begin(), notes.end(), [](const Note& note) { return !note.text.empty(); });
    if (written == notes.end()) return;
    const std::string bytes = KeptFileBytes(notes);
    std::error_code failed = MakeFolder(folder_);
    if (failed) throw std::system_error(failed);

    std::vector<std::wstring> names = KeptNames(folder_);
    std::wstring stamp = Stamp(now);
    // A clock that was set back must not make the newest note look like the oldest.
    if (!names.empty() && StampOf(names.back()) >= stamp) stamp = Next(StampOf(names.back()));
    const auto write = [&](const std::wstring& name) {
        names.push_back(name + kExport);
        return WriteNewFile(folder_ / FilePath(names.back()), bytes);
    };
    const std::wstring words = NameFromText(written->text, kLongestNamedText);
    failed = write(words.empty() ? stamp : stamp + L" " + words);
    if (failed && !words.empty()) {
        // There are file systems that do not take every name.
        names.pop_back();
        failed = write(stamp);
    }
    if (failed) throw std::system_error(failed);

    std::error_code ignored;
    for (std::size_t i = 0; most_ < names.size() - i; ++i) {
        const fs::path file = folder_ / FilePath(names[i]);
        fs::remove(file, ignored);
        fs::remove(TextBeside(file), ignored);
    }
}

std::vector<NoteFolder::File> NoteFolder::Files() const {
    std::error_code failed;
    const std::vector<std::wstring> names = KeptNames(folder_, failed);
    if (failed && failed != std::errc::no_such_file_or_directory) throw std::system_error(failed);
    std::vector<File> files;
    for (auto name = names.rbegin(); name != names.rend(); ++name) files.push_back({*name, NotesOf(*name)});
    return files;
}

std::vector<Note> NoteFolder::NotesOf(const std::wstring& name) const {
    std::error_code ignored;
    return Read(name, ignored);
}

std::vector<Note> NoteFolder::Read(const std::wstring& name, std::error_code& failed) const {
    const fs::path path = folder_ / FilePath(name);
    ByteSource file = ByteSource::OfFile(path);
    std::vector<Note> notes = NotesOfKeptFile(file);
    ByteSource whole = ByteSource::OfFile(TextBeside(path));
    if (whole.Size() > 0 && !notes.empty()) {
        notes.resize(1);
        notes.front().text = FromUtf8(whole.ReadRest());
        failed = whole.Failure();
    }
    if (file.Failure()) failed = file.Failure();
    return notes;
}

std::error_code NoteFolder::TakeOut(const std::wstring& name, const std::vector<Note>& notes) const {
    const fs::path file = folder_ / FilePath(name);
    std::error_code failed, ignored;
    std::vector<Note> rest = Read(name, failed);
    // What cannot be read now may hold others.
    if ((failed || rest.empty()) && fs::exists(file, ignored))
        return failed ? failed : std::make_error_code(std::errc::io_error);
    std::unordered_multimap<std::wstring_view, const Note*> wanted;
    for (const Note& note : notes) wanted.emplace(note.text, &note);
    std::erase_if(rest, [&](const Note& note) {
        const auto [first, last] = wanted.equal_range(note.text);
        const auto found = std::find_if(first, last, [&](const auto& each) { return *each.second == note; });
        if (found == last) return false;
        wanted.erase(found);
        return true;
    });
    if (!rest.empty()) return SaveFile(file, KeptFileBytes(rest));
    fs::remove(file, failed);
    if (!failed) fs::remove(TextBeside(file), ignored);
    return failed;
}

std::wstring NoteFolder::KeptWhen(const std::wstring& name) {
    std::wstring time = name.substr(11, 8);
    std::replace(time.begin(), time.end(), L'.', L':');
    return name.substr(8, 2) + L"." + name.substr(5, 2) + L"." + name.substr(0, 4) + L", " + time;
}
