#include "registry/RewriteJournal.h"

#include "base/ByteFields.h"

namespace {

constexpr std::string_view kMagic = "Kivora journal 1\r\n";
constexpr std::size_t kSumBytes = 8;

enum Kind : std::uint8_t { Text, Number };

}  // namespace

std::wstring NewMark(const KeyContent& content) {
    return std::to_wstring(CheckSum(BytesOf({.mark = {}, .content = content})));
}

std::string BytesOf(const RewriteJournal& journal) {
    std::string bytes(kMagic);
    AddText(bytes, journal.mark);
    for (const auto& [path, value] : journal.content) {
        AddText(bytes, path);
        const auto* text = std::get_if<std::wstring>(&value);
        AddNumber<std::uint8_t>(bytes, text ? Text : Number);
        if (text)
            AddText(bytes, *text);
        else
            AddNumber(bytes, static_cast<std::uint32_t>(AsNumber(value)));
    }
    AddNumber(bytes, CheckSum(bytes));
    return bytes;
}

std::optional<RewriteJournal> JournalOf(std::string_view bytes) {
    if (bytes.size() < kMagic.size() + kSumBytes || !bytes.starts_with(kMagic)) return std::nullopt;
    const std::string_view summed = bytes.substr(0, bytes.size() - kSumBytes);
    if (FieldReader(bytes.substr(summed.size())).Take<std::uint64_t>() != CheckSum(summed))
        return std::nullopt;
    FieldReader fields(summed.substr(kMagic.size()));
    RewriteJournal journal{fields.Text(), {}};
    while (fields.Left() > 0) {
        const std::wstring path = fields.Text();
        if (fields.Take<std::uint8_t>() == Text)
            journal.content.emplace_back(path, fields.Text());
        else
            journal.content.emplace_back(path, static_cast<std::int32_t>(fields.Take<std::uint32_t>()));
    }
    if (!fields.Complete()) return std::nullopt;
    return journal;
}
