#pragma once
// A note as data: what it says, when it was written, how it looks and where it stands. Whoever shows, keeps,
// sends, prints or exports a note has one of these; the record of an export file is the only other form.
// No window, no registry.

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "model/NoteColor.h"

// Alignment codes of a note's text.
enum : std::int32_t { kAlignLeft = 0, kAlignRight = 1, kAlignCentre = 2 };

// Font sizes in points.
constexpr std::int32_t kSmallestFontSize = 8;
constexpr std::int32_t kLargestFontSize = 25;
constexpr std::int32_t kDefaultFontSize = 12;

// How the text of a note looks. As it stands here: what a new note looks like.
struct NoteLook {
    std::int32_t size = kDefaultFontSize;  // points; kept as it is, drawn within the bounds above
    bool bold = false, italic = false, underlined = false;
    std::int32_t alignment = kAlignLeft;  // any other code shows as left
    std::int32_t color = kYellow;         // colour code, 0x00BBGGRR

    auto operator<=>(const NoteLook&) const = default;
};

// The size in which the text is drawn.
std::int32_t DrawnSize(const NoteLook& look);

// A style that a text is set in or not, and the caption of its box in the dialog.
struct NoteStyle {
    bool NoteLook::*flag;
    const wchar_t* caption;
};
// In the order of the dialog's boxes.
inline constexpr NoteStyle kNoteStyles[] = {
    {&NoteLook::underlined, L"unterstrichen"},
    {&NoteLook::bold, L"fett"},
    {&NoteLook::italic, L"kursiv"},
};

// The window's place on the desktop, in twips. May be one that the screens of now cannot show.
struct NotePlace {
    double left = 0, top = 0, width = 0, height = 0;

    bool operator==(const NotePlace&) const = default;
};

struct Note {
    std::wstring text = {};  // CR LF between its lines
    std::wstring creationTime = {};
    NoteLook look = {};
    NotePlace place = {};
    bool foreground = false;  // stays above other windows

    bool operator==(const Note&) const = default;
};

// The beginning of a text in one line, as a tip shows it: 55 characters and " ..." at most.
std::wstring ShortText(std::wstring_view text);

// A text of up to so many bytes comes back after a restart, whatever it is made of: the registry reads it
// through a buffer of 4096 characters that also takes a terminator.
constexpr std::size_t kLongestStoredText = 4095;
bool ComesBack(std::wstring_view text);

// Longest text that is taken from outside as one note, in bytes: what a record of an export file holds.
constexpr std::size_t kLongestNoteText = 65535;
