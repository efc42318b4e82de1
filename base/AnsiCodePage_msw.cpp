// The system's ANSI code page.
#include <windows.h>

#include "base/basText.h"

namespace {

constexpr wchar_t kNoCharacter = 0xFFFD;

bool IsPair(wchar_t left, wchar_t right) {
    return left >= 0xD800 && left <= 0xDBFF && right >= 0xDC00 && right <= 0xDFFF;
}

// No code page of bytes has characters beyond the first plane; the two halves of one are one character.
std::wstring WithoutPairs(std::wstring_view text) {
    std::wstring result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const bool pair = at + 1 < text.size() && IsPair(text[at], text[at + 1]);
        result += pair ? kNoCharacter : text[at];
        if (pair) ++at;
    }
    return result;
}

}  // namespace

std::string ToAnsi(std::wstring_view text) {
    // A system can be set to this one, which knows no replacement.
    if (GetACP() == CP_UTF8) return ToUtf8(text);
    const std::wstring wide = WithoutPairs(text);
    const int length = static_cast<int>(wide.size());
    // Letters that merely look alike are no replacement either.
    const auto convert = [&](char* bytes, int size) {
        return WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, wide.data(), length, bytes, size, "?",
                                   nullptr);
    };
    std::string bytes(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
    convert(bytes.data(), static_cast<int>(bytes.size()));
    return bytes;
}

std::wstring FromAnsi(std::string_view bytes) {
    const int length = static_cast<int>(bytes.size());
    std::wstring text(bytes.size(), L'\0');
    const int size = MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, text.data(), length);
    text.resize(static_cast<std::size_t>(size));
    return text;
}
