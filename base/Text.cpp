#include "base/Text.h"

#include <algorithm>

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool IsHighSurrogate(wchar_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool IsLowSurrogate(wchar_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

// The character that begins at `at`, which moves behind it.
char32_t TakeCharacter(std::wstring_view text, std::size_t& at) {
    const wchar_t c = text[at++];
    if (IsHighSurrogate(c) && at < text.size() && IsLowSurrogate(text[at]))
        return 0x10000 + ((static_cast<char32_t>(c) - 0xD800) << 10) +
               (static_cast<char32_t>(text[at++]) - 0xDC00);
    const auto value = static_cast<char32_t>(c);
    return (value >= 0xD800 && value <= 0xDFFF) || value > 0x10FFFF ? kReplacement : value;
}

void AppendUtf8(std::string& out, char32_t c) {
    const auto add = [&out](char32_t byte) { out += static_cast<char>(byte); };
    if (c < 0x80) {
        add(c);
    } else if (c < 0x800) {
        add(0xC0 | c >> 6);
        add(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        add(0xE0 | c >> 12);
        add(0x80 | (c >> 6 & 0x3F));
        add(0x80 | (c & 0x3F));
    } else {
        add(0xF0 | c >> 18);
        add(0x80 | (c >> 12 & 0x3F));
        add(0x80 | (c >> 6 & 0x3F));
        add(0x80 | (c & 0x3F));
    }
}

void AppendWide(std::wstring& out, char32_t c) {
    if (sizeof(wchar_t) == 2 && c >= 0x10000) {
        out += static_cast<wchar_t>(0xD800 + ((c - 0x10000) >> 10));
        out += static_cast<wchar_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    } else {
        out += static_cast<wchar_t>(c);
    }
}

// Decodes the sequence that begins at `at`, which moves behind it; a byte that begins no valid one is skipped
// alone.
char32_t TakeUtf8(std::string_view bytes, std::size_t& at) {
    const auto lead = static_cast<unsigned char>(bytes[at++]);
    if (lead < 0x80) return lead;
    const std::size_t trailing = lead >= 0xC2 && lead <= 0xDF   ? 1
                                 : lead >= 0xE0 && lead <= 0xEF ? 2
                                 : lead >= 0xF0 && lead <= 0xF4 ? 3
                                                                : 0;
    if (trailing == 0 || bytes.size() - at < trailing) return kReplacement;
    char32_t value = lead & (0x3F >> trailing);
    for (std::size_t i = 0; i < trailing; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[at + i]);
        if ((byte & 0xC0) != 0x80) return kReplacement;
        value = value << 6 | (byte & 0x3F);
    }
    const bool tooShort = (trailing == 2 && value < 0x800) || (trailing == 3 && value < 0x10000);
    const bool noCharacter = value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF);
    if (tooShort || noCharacter) return kReplacement;
    at += trailing;
    return value;
}

// The two halves of CR LF or of a surrogate pair, between which no text may be cut.
bool BelongTogether(wchar_t left, wchar_t right) {
    return (left == L'\r' && right == L'\n') || (IsHighSurrogate(left) && IsLowSurrogate(right));
}

bool IsInsideUnit(std::wstring_view text, std::size_t at) {
    return at > 0 && at < text.size() && BelongTogether(text[at - 1], text[at]);
}

std::size_t UnitEnd(std::wstring_view text, std::size_t at) {
    return at + (IsInsideUnit(text, at + 1) ? 2 : 1);
}

std::size_t UnitLength(std::wstring_view text, std::size_t at) {
    if (text[at] == L'\r' || text[at] == L'\n') return 2;
    const char32_t c = TakeCharacter(text, at);
    return c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
}

}  // namespace

std::string ToUtf8(std::wstring_view text) {
    std::string bytes(text.size(), '\0');
    std::size_t at = 0;
    for (; at < text.size() && static_cast<unsigned>(text[at]) < 0x80; ++at)
        bytes[at] = static_cast<char>(text[at]);
    bytes.resize(at);
    while (at < text.size()) AppendUtf8(bytes, TakeCharacter(text, at));
    return bytes;
}

std::wstring FromUtf8(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    for (std::size_t at = 0; at < bytes.size();) AppendWide(text, TakeUtf8(bytes, at));
    return text;
}

std::wstring WithCrLf(std::wstring_view text) {
    std::wstring result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); at = UnitEnd(text, at)) {
        if (text[at] == L'\r' || text[at] == L'\n')
            result += L"\r\n";
        else
            result += text.substr(at, UnitEnd(text, at) - at);
    }
    return result;
}

std::wstring AsNoteText(std::wstring text) {
    std::replace(text.begin(), text.end(), L'\0', L' ');
    text = WithCrLf(text);
    while (text.ends_with(L"\r\n")) text.resize(text.size() - 2);
    return text;
}

std::wstring Flattened(std::wstring_view text) {
    std::wstring result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool breaks = text[at] == L'\r' || text[at] == L'\n' || text[at] == L'\t';
        result += breaks ? L' ' : text[at];
        if (breaks && at + 1 < text.size() && text[at + 1] == L'\n') ++at;
    }
    return result;
}

std::size_t StoredLength(std::wstring_view text) {
    std::size_t length = 0;
    for (std::size_t at = 0; at < text.size(); at = UnitEnd(text, at)) length += UnitLength(text, at);
    return length;
}

std::wstring FitEdit(const std::wstring& before, const std::wstring& after, std::size_t limit,
                     std::size_t* caret) {
    const std::size_t shorter = std::min(before.size(), after.size());
    std::size_t prefix = 0;
    while (prefix < shorter && before[prefix] == after[prefix]) ++prefix;
    if (IsInsideUnit(before, prefix) || IsInsideUnit(after, prefix)) --prefix;
    std::size_t suffix = 0;
    while (suffix < shorter - prefix &&
           before[before.size() - suffix - 1] == after[after.size() - suffix - 1])
        ++suffix;
    if (suffix > 0 &&
        (IsInsideUnit(before, before.size() - suffix) || IsInsideUnit(after, after.size() - suffix)))
        --suffix;

    const std::wstring_view whole = after;
    const std::size_t insertedEnd = after.size() - suffix;
    const std::size_t allowed = std::max(limit, StoredLength(before));
    std::size_t length = StoredLength(whole.substr(0, prefix)) + StoredLength(whole.substr(insertedEnd));
    std::size_t kept = prefix;
    while (kept < insertedEnd) {
        length += UnitLength(whole, kept);
        if (length > allowed) break;
        kept = UnitEnd(whole, kept);
    }
    if (caret) *caret = kept;
    return after.substr(0, kept) + after.substr(insertedEnd);
}
