#pragma once
// The line protocol by which two copies of the program exchange notes: its words, its checks and its texts.
// The sender sends one command a line and reads the reply to it before the next one; the receiver builds a
// note from them. Everything here is text without line ends; the callers make bytes of it. No window, no
// socket.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "model/Note.h"

constexpr std::uint16_t kNotePort = 5998;
constexpr std::wstring_view kProtocolVersion = L"1.0.0";

// The longest line has room for the longest text of a note and the word before it, NOTE_TEXT and a blank.
constexpr std::size_t kLongestLine = 65545;

// Longest reply that a sender reads as a whole; receivers of earlier versions repeat a long line in it.
constexpr std::size_t kLongestReply = std::size_t{1} << 20;

// Receiver: a command line in two. A line without a blank is its own parameter, too.
std::wstring_view CommandWord(std::wstring_view line);
std::wstring_view CommandParameter(std::wstring_view line);

// Sets the attribute that the command names. False when the parameter is none of the values allowed; the look
// stays as it was then. Nothing when the command sets no attribute.
std::optional<bool> SetAttribute(NoteLook& look, std::wstring_view word, std::wstring_view parameter);

// Receiver: its replies.
std::wstring Greeting();
std::wstring InvalidParameterReply(std::wstring_view line);
std::wstring UnknownCommandReply(std::wstring_view line);
std::wstring ExecutionErrorReply(int number, std::wstring_view description, std::wstring_view line);

// Sender: the commands for one note, NOTE_NEW to NOTE_FINISHED. They carry its text and its look.
std::vector<std::wstring> CommandsFor(const Note& note);

// The lines between the CR LFs of a text; always at least one.
std::vector<std::wstring> SplitText(std::wstring_view text);

// Sender: a reply line in two. The rest lacks the first character behind the blank; receivers' texts are
// shown in that form.
std::wstring ReplyWord(std::wstring_view reply);
std::wstring ReplyRest(std::wstring_view reply);

// The protocol version that a greeting names; one that names none has the first version.
std::wstring RemoteVersion(std::wstring_view greeting);
