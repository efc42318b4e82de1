// The ANSI code page of Windows.
#include <windows.h>

#include "base/Text.h"

namespace {

constexpr wchar_t kNoCharacter = 0xFFFD;

bool IsPair(wchar_t left, wchar_t right) {
    return left >= 0xD800 && left <= 0xDBFF && right >= 0xDC00 && right <= 0xDFFF;
}

// A character beyond U+FFFF is two units of wchar_t and is in no code page: it becomes one '?', not two.
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
    // Windows can be set to UTF-8 as its ANSI code page; then asking for a replacement fails.
    if (GetACP() == CP_UTF8) return ToUtf8(text);
    const std::wstring wide = WithoutPairs(text);
    const int length = static_cast<int>(wide.size());
    // Without the flag, Windows would put letters that merely look alike.
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
