#include "app/LongNotes.h"

#include <wx/datetime.h>

#include <fstream>
#include <stdexcept>

#include "app/Platform.h"
#include "exchange/basExport.h"

namespace {

namespace fs = std::filesystem;

// What the 16 bits of a text's length can count, with room to spare.
constexpr std::size_t kLongestPiece = 65'000;

// A name that no file has: the time, and a number from the second note of a second on.
fs::path NewFile(const fs::path& folder) {
    const std::string time = wxDateTime::Now().Format(L"%Y%m%d-%H%M%S").utf8_string();
    fs::path file = folder / ("Notiz-" + time + ".kvr");
    for (int number = 2; fs::exists(file); ++number) {
        file = folder / ("Notiz-" + time + "-" + std::to_string(number) + ".kvr");
    }
    return file;
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

}  // namespace

fs::path LongNotesFolder() { return DataFolder() / "lange-notizen"; }

void KeepLongNote(const frmNote& note) {
    const fs::path folder = LongNotesFolder();
    fs::create_directories(folder);
    fs::permissions(folder, fs::perms::owner_all);
    const fs::path path = NewFile(folder);
    std::ofstream file(path, std::ios::binary);
    std::error_code ignored;
    fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write, ignored);
    ExportedNote record = ToRecord(note);
    const std::wstring text = record.Text;
    std::wstring_view rest = text;
    while (file && !rest.empty()) {
        record.Text = TakePiece(rest);
        WriteRecord(file, record);
    }
    file.close();
    if (!file) throw std::runtime_error("The text is too long to be kept");
}
