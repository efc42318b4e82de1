#include "net/Protocol.h"

#include <algorithm>
#include <charconv>

namespace {

constexpr std::wstring_view kVersionWord = L"PROTOCOL_VERSION";
constexpr std::wstring_view kLineEnd = L"\r\n";

// The styles, each 0 or 1, in the order in which they are sent. The words are fixed by the protocol.
constexpr struct {
    std::wstring_view word;
    bool NoteLook::*flag;
} kStyleCommands[] = {{L"NOTE_FONT_BOLD", &NoteLook::bold},
                      {L"NOTE_FONT_ITALIC", &NoteLook::italic},
                      {L"NOTE_FONT_UNDERLINED", &NoteLook::underlined}};

std::wstring Joined(std::wstring_view begin, std::wstring_view end) {
    std::wstring text(begin);
    text += end;
    return text;
}

// The whole number of a parameter: digits, a sign before them, blanks around. Nothing for anything else and
// for what does not fit 32 bits.
std::optional<std::int32_t> NumericParameter(std::wstring_view parameter) {
    const std::size_t first = parameter.find_first_not_of(L' ');
    if (first == parameter.npos) return std::nullopt;
    parameter = parameter.substr(first, parameter.find_last_not_of(L' ') - first + 1);
    if (parameter[0] == L'+' && parameter.size() > 1 && parameter[1] != L'-') parameter.remove_prefix(1);
    if (parameter.size() > 64) return std::nullopt;
    std::string digits;
    for (const wchar_t c : parameter) digits += c > 0 && c < 0x80 ? static_cast<char>(c) : '?';
    std::int32_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [at, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc() || at != end) return std::nullopt;
    return value;
}

bool SetWithin(std::int32_t& attribute, std::optional<std::int32_t> value, int lowest, int highest) {
    if (!value || *value < lowest || *value > highest) return false;
    attribute = *value;
    return true;
}

}  // namespace

std::wstring_view CommandWord(std::wstring_view line) { return line.substr(0, line.find(L' ')); }

std::wstring_view CommandParameter(std::wstring_view line) {
    const std::size_t blank = line.find(L' ');
    return blank == line.npos ? line : line.substr(blank + 1);
}

std::optional<bool> SetAttribute(NoteLook& look, std::wstring_view word, std::wstring_view parameter) {
    const auto number = NumericParameter(parameter);
    if (word == L"NOTE_FONT_SIZE") return SetWithin(look.size, number, kSmallestFontSize, kLargestFontSize);
    if (word == L"NOTE_FONT_ALIGNMENT") return SetWithin(look.alignment, number, kAlignLeft, kAlignCentre);
    if (word == L"NOTE_COLOR") {
        const auto end = kNoteColors.end();
        if (!number || std::find(kNoteColors.begin(), end, *number) == end) return false;
        look.color = *number;
        return true;
    }
    for (const auto& style : kStyleCommands) {
        if (word != style.word) continue;
        if (number != 0 && number != 1) return false;
        look.*style.flag = number == 1;
        return true;
    }
    return std::nullopt;
}

std::wstring Greeting() {
    const std::string_view version = KIVORA_VERSION;
    std::wstring greeting = L"OK Kivora ";
    greeting.append(version.begin(), version.end());
    greeting += L" PROTOCOL_VERSION ";
    greeting += kProtocolVersion;
    return greeting + L" READY";
}

std::wstring InvalidParameterReply(std::wstring_view line) {
    return Joined(L"ERROR Invalid parameter: ", line);
}

std::wstring UnknownCommandReply(std::wstring_view line) { return Joined(L"ERROR Unknown command: ", line); }

std::wstring ExecutionErrorReply(int number, std::wstring_view description, std::wstring_view line) {
    std::wstring reply = L"ERROR Error during command execution: [" + std::to_wstring(number) + L"] ";
    reply += description;
    return Joined(reply + L". Offending command: ", line);
}

std::vector<std::wstring> CommandsFor(const Note& note) {
    std::vector<std::wstring> commands = {L"NOTE_NEW"};
    for (const std::wstring& line : SplitText(note.text)) commands.push_back(L"NOTE_TEXT " + line);
    const auto add = [&](std::wstring_view word, std::int32_t value) {
        commands.push_back(std::wstring(word) + L' ' + std::to_wstring(value));
    };
    add(L"NOTE_FONT_SIZE", note.look.size);
    for (const auto& style : kStyleCommands) add(style.word, note.look.*style.flag);
    add(L"NOTE_FONT_ALIGNMENT", note.look.alignment);
    add(L"NOTE_COLOR", note.look.color);
    commands.push_back(L"NOTE_FINISHED");
    return commands;
}

std::vector<std::wstring> SplitText(std::wstring_view text) {
    std::vector<std::wstring> lines;
    for (;;) {
        const std::size_t end = text.find(kLineEnd);
        lines.emplace_back(text.substr(0, end));
        if (end == text.npos) return lines;
        text.remove_prefix(end + kLineEnd.size());
    }
}

std::wstring ReplyWord(std::wstring_view reply) {
    const std::size_t blank = reply.find(L' ');
    return std::wstring(reply.substr(0, blank == reply.npos ? reply.find(kLineEnd) : blank));
}

std::wstring ReplyRest(std::wstring_view reply) {
    const std::size_t blank = reply.find(L' ');
    if (blank == reply.npos) return {};
    const std::wstring_view rest = reply.substr(std::min(blank + 2, reply.size()));
    return std::wstring(rest.substr(0, rest.find(kLineEnd)));
}

std::wstring RemoteVersion(std::wstring_view greeting) {
    const std::size_t word = greeting.find(kVersionWord);
    if (word == greeting.npos) return std::wstring(kProtocolVersion);
    const std::wstring_view version =
        greeting.substr(std::min(word + kVersionWord.size() + 1, greeting.size()));
    return std::wstring(version.substr(0, version.find(L' ')));
}
