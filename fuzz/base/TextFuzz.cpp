// Texts between bytes and characters, and edits that have to fit.
#include "base/Text.h"
#include "exchange/ImportFile.h"
#include "fuzz/support/FuzzTarget.h"

namespace {

void Convert(FuzzInput& input) {
    const std::size_t limit = input.Byte();
    const std::string_view bytes = input.Field();
    const std::wstring text = FromUtf8(bytes), other = input.Text();

    Require(text.size() <= bytes.size(), "no more characters than bytes");
    Require(FromUtf8(ToUtf8(text)) == text, "a text comes back from UTF-8");
    Require(ToAnsi(FromAnsi(bytes)) == bytes, "bytes come back from characters");
    Require(ToAnsi(text).size() == text.size(), "a byte a character");
    // Any units at all, which are no text.
    std::wstring units;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
        units += static_cast<wchar_t>(static_cast<unsigned char>(bytes[i]) << 8 |
                                      static_cast<unsigned char>(bytes[i + 1]));
    Require(FromUtf8(ToUtf8(units)).size() <= units.size(), "what is no text becomes one");

    const std::wstring lines = WithCrLf(text);
    Require(WithCrLf(lines) == lines, "CR LF stays CR LF");
    Require(StoredLength(text) == ToUtf8(lines).size(), "the stored length is that of UTF-8 with CR LF");
    const std::wstring flat = Flattened(text);
    Require(flat.find_first_of(L"\r\n\t") == flat.npos && flat.size() <= text.size(), "one line is one line");

    std::size_t caret = 0;
    const std::wstring fitting = FitEdit(text, other, limit, &caret);
    Require(StoredLength(fitting) <= std::max(limit, StoredLength(text)), "an edit fits");
    Require(caret <= fitting.size(), "the caret is in the text");
    Require(StoredLength(other) > limit || fitting == other, "what fits is not touched");

    const std::wstring note = NoteOfText(bytes).text;
    Require(note.find(L'\0') == note.npos && WithCrLf(note) == note, "a text file becomes a note");
}

const FuzzTarget kTarget("Text", Convert);

}  // namespace
