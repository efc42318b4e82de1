#pragma once
// The line protocol by which two copies of the program exchange notes: its words, its checks and its texts.
// The sender sends one command a line and reads the reply to it before the next one; the receiver builds a
// note from them. Everything here is text without line ends; bytes and line ends are the callers' business.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/NoteColor.h"

constexpr std::uint16_t kNotePort = 5998;
constexpr std::wstring_view kProtocolVersion = L"1.0.0";

// Longest line and longest text of a note that a receiver takes, in bytes. Far more than anyone writes, and
// little enough that nobody can fill the memory of another computer.
constexpr std::size_t kLongestLine = std::size_t{1} << 20;
constexpr std::size_t kLongestNoteText = std::size_t{4} << 20;

// What the protocol carries of a note; as it stands here, what a new note is.
struct NoteContent {
    std::wstring text;  // with CR LF between its lines
    std::int32_t fontSize = 12;
    bool bold = false, italic = false, underlined = false;
    std::int32_t alignment = 0;
    std::int32_t color = kYellow;

    bool operator==(const NoteContent&) const = default;
};

// Receiver: a command line in two. A line without a blank is its own parameter, too.
std::wstring_view CommandWord(std::wstring_view line);
std::wstring_view CommandParameter(std::wstring_view line);

// The whole number of a parameter: digits, a sign before them, blanks around. Nothing for anything else and
// for what does not fit 32 bits.
std::optional<std::int32_t> NumericParameter(std::wstring_view parameter);

// Sets the attribute that the command names. False when the parameter is none of the values allowed.
// Nothing when the command sets no attribute.
std::optional<bool> SetAttribute(NoteContent& note, std::wstring_view word, std::wstring_view parameter);

// Receiver: its replies.
std::wstring Greeting();
std::wstring InvalidParameterReply(std::wstring_view line);
std::wstring UnknownCommandReply(std::wstring_view line);
std::wstring ExecutionErrorReply(int number, std::wstring_view description, std::wstring_view line);

// Sender: the commands for one note, NOTE_NEW to NOTE_FINISHED.
std::vector<std::wstring> CommandsFor(const NoteContent& note);

// The lines between the CR LFs of a text; always at least one.
std::vector<std::wstring> SplitText(std::wstring_view text);

// Sender: a reply line in two. The rest lacks the first character behind the blank; receivers' texts are
// shown in that form.
std::wstring ReplyWord(std::wstring_view reply);
std::wstring ReplyRest(std::wstring_view reply);

// The protocol version that a greeting names; one that names none has the first version.
std::wstring RemoteVersion(std::wstring_view greeting);
