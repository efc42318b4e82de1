#include <windows.h>

#include "tests/registry/StoredText.h"

namespace {

std::string Converted(const std::string& text, UINT from, UINT to) {
    std::wstring wide(text.size(), L'\0');
    const int size = static_cast<int>(text.size());
    const int length = MultiByteToWideChar(from, 0, text.data(), size, wide.data(), size);
    std::string result(3 * wide.size(), '\0');
    result.resize(static_cast<std::size_t>(WideCharToMultiByte(
        to, 0, wide.data(), length, result.data(), static_cast<int>(result.size()), nullptr, nullptr)));
    return result;
}

}  // namespace

std::string Utf8OfStored(const std::string& bytes) { return Converted(bytes, CP_ACP, CP_UTF8); }
std::string StoredOfUtf8(const std::string& text) { return Converted(text, CP_UTF8, CP_ACP); }
