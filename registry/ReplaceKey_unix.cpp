#include <unordered_map>

#include "base/ByteFields.h"
#include "registry/RegistryHive.h"
#include "registry/ReplaceKey.h"

namespace {

// A sum of all that lies below each subkey; what lies in the key itself counts as below an empty one.
using Sums = std::unordered_map<std::wstring, std::uint64_t>;

std::wstring SubkeyOf(const std::wstring& path) {
    const std::size_t end = path.find(L'\\');
    return end == path.npos ? std::wstring() : path.substr(0, end);
}

std::uint64_t SumWithText(std::uint64_t sum, const std::wstring& text) {
    sum = SumWith(sum, text.size());
    for (const wchar_t character : text) sum = SumWith(sum, static_cast<std::uint64_t>(character));
    return sum;
}

Sums SumsOf(const KeyContent& content) {
    Sums sums;
    Sums::value_type* last = nullptr;
    for (const auto& [path, value] : content) {
        const bool same = last && !last->first.empty() && path.starts_with(last->first) &&
                          path.size() > last->first.size() && path[last->first.size()] == L'\\';
        if (!same) last = &*sums.try_emplace(SubkeyOf(path), kSumStart).first;
        const std::uint64_t sum = SumWithText(last->second, path);
        const auto* const text = std::get_if<std::wstring>(&value);
        last->second =
            text ? SumWithText(sum, *text) : SumWith(sum, static_cast<std::uint64_t>(AsNumber(value)));
    }
    return sums;
}

// What ReplaceKey has written last: while the hive is as it was then, the subkeys whose sums are the same are
// left alone. With many notes, of which one has changed, that saves nearly all of the work.
struct Written {
    std::wstring key;
    std::uint64_t version = 0;  // of the hive in memory
    Sums sums;
};

void WriteDifference(const std::wstring& key, const KeyContent& content, const Sums& before,
                     const Sums& now) {
    const auto differs = [&](const std::wstring& subkey) {
        const auto is = now.find(subkey), was = before.find(subkey);
        return is == now.end() || was == before.end() || is->second != was->second;
    };
    for (const auto& [subkey, sum] : before)
        if (differs(subkey)) Registry().DeleteKey(key + subkey);
    KeyContent different;
    for (const auto& value : content)
        if (differs(SubkeyOf(value.first))) different.push_back(value);
    WriteValues(key, different);
}

}  // namespace

KeepResult ReplaceKey(const std::wstring& key, const KeyContent& content) {
    static Written last;
    Sums sums = SumsOf(content);
    RegistryTransaction replacing;
    const bool known = last.key == key && last.version == Hive().Image().Version();
    if (known && last.sums[{}] == sums[{}])
        WriteDifference(key, content, last.sums, sums);
    else
        WriteKey(key, content);
    const std::uint64_t version = Hive().Image().Version();
    KeepResult result = replacing.Commit();
    last = result.Kept() ? Written{key, version, std::move(sums)} : Written();
    return result;
}

// The hive's transactions leave nothing to be completed.
KeepResult CompleteKey(const std::wstring&) { return {}; }
