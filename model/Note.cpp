#include "model/Note.h"

#include <algorithm>

#include "base/Text.h"

std::int32_t DrawnSize(const NoteLook& look) {
    return std::clamp(look.size, kSmallestFontSize, kLargestFontSize);
}

std::wstring ShortText(std::wstring_view text) {
    constexpr std::size_t kLongest = 55;
    const std::wstring line = Flattened(text);
    return line.size() > kLongest ? line.substr(0, kLongest) + L" ..." : line;
}

bool ComesBack(std::wstring_view text) { return StoredLength(text) <= kLongestStoredText; }
