// Windows-1252: the ANSI code page of the Windows computers that share files and notes with this one.
#include <algorithm>
#include <array>

#include "base/Text.h"

namespace {

// The bytes 80 to 9F; all others stand for the character of the same number. The five that the code page
// leaves open stand for the control characters of their number, so that no byte is lost on its way through
// the program.
constexpr std::array<wchar_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char ToByte(wchar_t c) {
    if ((c >= 0 && c < 0x80) || (c >= 0xA0 && c <= 0xFF)) return static_cast<char>(c);
    for (std::size_t i = 0; i < kUpperControls.size(); ++i)
        if (kUpperControls[i] == c) return static_cast<char>(0x80 + i);
    return '?';
}

wchar_t ToCharacter(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 && byte < 0xA0 ? kUpperControls[byte - 0x80] : static_cast<wchar_t>(byte);
}

}  // namespace

std::string ToAnsi(std::wstring_view text) {
    std::string bytes(text.size(), '\0');
    std::ranges::transform(text, bytes.begin(), ToByte);
    return bytes;
}

std::wstring FromAnsi(std::string_view bytes) {
    std::wstring text(bytes.size(), L'\0');
    std::ranges::transform(bytes, text.begin(), ToCharacter);
    return text;
}
