#include "base/ByteFields.h"

#include "base/Text.h"

std::uint64_t CheckSum(std::string_view bytes) {
    std::uint64_t sum = kSumStart;
    for (const char byte : bytes) sum = SumWith(sum, static_cast<unsigned char>(byte));
    return sum;
}

void AddText(std::string& bytes, std::wstring_view text) {
    const std::string utf8 = ToUtf8(text);
    AddNumber(bytes, static_cast<std::uint32_t>(utf8.size()));
    bytes += utf8;
}

std::string_view FieldReader::Bytes(std::size_t count) {
    if (count > bytes_.size()) {
        complete_ = false;
        bytes_ = {};
        return {};
    }
    const std::string_view taken = bytes_.substr(0, count);
    bytes_.remove_prefix(count);
    return taken;
}

std::wstring FieldReader::Text() { return FromUtf8(Bytes(Take<std::uint32_t>())); }
