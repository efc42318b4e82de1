// Any file that is chosen for import: an export file, a kept one or a text.
#include <cstdlib>
#include <fstream>

#include "base/Text.h"
#include "exchange/ImportFile.h"
#include "fuzz/support/FuzzTarget.h"

namespace {

void Import(FuzzInput& input) {
    static const std::filesystem::path folder = std::getenv("XDG_RUNTIME_DIR");
    const bool isText = input.Byte() == 't';
    const std::filesystem::path file = folder / (isText ? "fuzz.TXT" : "fuzz.kvr");
    const std::string bytes(input.Rest());
    std::ofstream(file, std::ios::binary) << bytes;

    const std::vector<std::wstring> listed = ListNotes(file);
    const ReadNotes read = ReadNotesOf(file, listed.size(), [](std::size_t) { return true; });
    Require(read.complete && read.notes.size() == listed.size(), "all that is listed can be read");
    Require(!isText || listed.size() == (bytes.empty() ? 0 : 1), "a text file is one note");
    for (std::size_t i = 0; i < listed.size(); ++i) {
        Require(listed[i].size() <= kListedCharacters, "listed texts have their limit");
        const Note& note = read.notes[i];
        Require(note.text.find(L'\0') == note.text.npos, "no text holds a NUL");
    }
    if (!listed.empty())
        Require(NoteAt(file, listed.size() - 1) == read.notes.back() || isText, "the last one is there");
    Require(!NoteAt(file, listed.size()), "behind the last one there is none");
    if (isText && !bytes.empty()) {
        const std::wstring& text = read.notes[0].text;
        Require(WithCrLf(text) == text, "line breaks are CR LF");
    }
}

const FuzzTarget kTarget("ImportFile", Import);

}  // namespace
