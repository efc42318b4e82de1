#include "registry/clsRegistry.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "base/twips.h"
#include "registry/RegistryCalls.h"

using RegistryCalls::FromCodePage;
using RegistryCalls::ToCodePage;

namespace {

constexpr std::size_t kTextBuffer = 4096;

std::optional<std::uint32_t> RootOf(std::wstring_view name) {
    static constexpr std::pair<std::wstring_view, std::uint32_t> roots[] = {
        {L"HKLM", 2}, {L"HKCR", 0}, {L"HKCU", 1}, {L"HKU", 3}, {L"HKCC", 5}, {L"HKDD", 6}};
    for (const auto& [abbreviation, number] : roots)
        if (name == abbreviation) return number;
    return std::nullopt;
}

// Counts without looking at the last character once the search has come that far.
std::size_t CountOccurrences(std::wstring_view text, std::wstring_view searched) {
    std::size_t count = 0;
    std::size_t position = 0;
    while (position + 1 < text.size()) {
        const std::size_t found = text.find(searched, position);
        if (found == std::wstring_view::npos) break;
        ++count;
        position = found + searched.size();
    }
    return count;
}

// A registry path taken apart. For key operations the key is all behind the root; for values, and for a key
// to be deleted, `item` is what follows the last backslash and the key what lies between.
struct Place {
    RegistryCalls::Key key;
    std::string item;
};

std::optional<RegistryCalls::Key> KeyOf(const std::wstring& path) {
    const std::size_t first = path.find(L'\\');
    const bool isRoot = first == std::wstring::npos || first == 0;
    const auto root = RootOf(isRoot ? path : std::wstring_view(path).substr(0, first));
    if (!root) return std::nullopt;
    return RegistryCalls::Key{*root, isRoot ? std::string() : ToCodePage(path.substr(first + 1))};
}

std::optional<Place> ItemOf(const std::wstring& path) {
    const auto root = KeyOf(path);
    if (!root) return std::nullopt;
    const std::size_t first = path.find(L'\\'), last = path.rfind(L'\\');
    Place place{{root->root, {}}, ToCodePage(last == std::wstring::npos ? path : path.substr(last + 1))};
    if (CountOccurrences(path, L"\\") >= 2)
        place.key.path = ToCodePage(path.substr(first + 1, last - first - 1));
    return place;
}

bool IsText(std::int32_t type) {
    return type == REG_TYPE_SZ || type == REG_TYPE_EXPAND_SZ || type == REG_TYPE_MULTI_SZ;
}

// What a reader with a buffer of blanks takes for the text: all before the first NUL, and nothing when there
// is none. A text that was stored without one gets one where there is room.
std::wstring TextOf(const RegistryCalls::Value& value, std::size_t room) {
    const std::size_t end = value.bytes.find('\0');
    if (end == std::string::npos &&
        (!IsText(static_cast<std::int32_t>(value.type)) || value.bytes.size() == room))
        return {};
    std::wstring text = FromCodePage(value.bytes.substr(0, end));
    // The limit is one of characters: what one platform gives back the others do, too.
    return text.size() < kTextBuffer ? text : std::wstring();
}

std::vector<std::wstring> Names(const std::vector<std::string>& names) {
    std::vector<std::wstring> texts(std::max<std::size_t>(names.size(), 1));
    std::transform(names.begin(), names.end(), texts.begin(), FromCodePage);
    return texts;
}

bool Write(const std::wstring& path, std::int32_t type, std::string bytes) {
    const auto place = ItemOf(path);
    if (place)
        RegistryCalls::SetValue(place->key, place->item,
                                {static_cast<std::uint32_t>(type), std::move(bytes)});
    return place.has_value();
}

}  // namespace

std::wstring AsText(const RegistryValue& value) {
    const auto* text = std::get_if<std::wstring>(&value);
    return text ? *text : std::wstring();
}

std::int32_t AsNumber(const RegistryValue& value) {
    const auto* number = std::get_if<std::int32_t>(&value);
    return number ? *number : 0;
}

bool clsRegistry::EnumValues(const std::wstring& path, std::vector<std::wstring>& ValArray) {
    const auto key = KeyOf(path);
    ValArray = Names(key ? RegistryCalls::ValueNames(*key) : std::vector<std::string>());
    return key.has_value();
}

std::int32_t clsRegistry::EnumKeys(const std::wstring& path, std::vector<std::wstring>& KeyArray) {
    const auto key = KeyOf(path);
    const auto names = key ? RegistryCalls::SubKeys(*key) : std::nullopt;
    KeyArray = Names(names.value_or(std::vector<std::string>()));
    return names ? static_cast<std::int32_t>(names->size()) : -1;
}

bool clsRegistry::KeyExists(const std::wstring& path) {
    const auto key = KeyOf(path);
    return key && RegistryCalls::KeyExists(*key);
}

bool clsRegistry::DeleteKey(const std::wstring& path) {
    // A path ends at a NUL: what came behind it would name the same key again and again.
    if (const std::size_t end = path.find(L'\0'); end != path.npos) return DeleteKey(path.substr(0, end));
    const auto place = ItemOf(path);
    if (!place) return false;
    std::vector<std::wstring> subKeys;
    EnumKeys(path, subKeys);
    const std::wstring above = path.back() == L'\\' ? path : path + L"\\";
    for (const std::wstring& name : subKeys)
        if (!name.empty()) DeleteKey(above + name);
    RegistryCalls::DeleteKey(place->key, place->item);
    return true;
}

bool clsRegistry::DeleteValue(const std::wstring& PathWithValue) {
    const auto place = ItemOf(PathWithValue);
    if (place) RegistryCalls::DeleteValue(place->key, place->item);
    return place.has_value();
}

RegistryValue clsRegistry::GetValue(const std::wstring& PathWithValue, std::int32_t RegType) {
    const auto place = ItemOf(PathWithValue);
    if (!place) return {};
    std::int32_t number = 0;
    const std::size_t room = IsText(RegType) ? kTextBuffer * RegistryCalls::kBytesOfCharacter : sizeof number;
    const auto value = RegistryCalls::ReadValue(place->key, place->item, room);
    if (IsText(RegType)) return value ? TextOf(*value, room) : std::wstring();
    if (value) std::memcpy(&number, value->bytes.data(), value->bytes.size());
    return number;
}

bool clsRegistry::SetValue(const std::wstring& PathWithValue, std::int32_t RegType,
                           const std::wstring& Value) {
    return Write(PathWithValue, RegType, ToCodePage(Value));
}

bool clsRegistry::SetValue(const std::wstring& PathWithValue, std::int32_t RegType, double Value) {
    const std::int32_t number = RoundToEven(Value);
    return Write(PathWithValue, RegType, {reinterpret_cast<const char*>(&number), sizeof number});
}

bool clsRegistry::CreateKey(const std::wstring& path) {
    const auto key = KeyOf(path);
    if (key) RegistryCalls::CreateKey(*key);
    return key.has_value();
}

std::wstring AsReadBack(const std::wstring& text) {
    constexpr std::uint32_t kType = REG_TYPE_SZ;
    const std::size_t room = kTextBuffer * RegistryCalls::kBytesOfCharacter;
    const RegistryCalls::Value value{kType, ToCodePage(text)};
    return value.bytes.size() > room ? std::wstring() : TextOf(value, room);
}

std::wstring WholeText(const std::wstring& PathWithValue) {
    constexpr std::size_t kRoom = 16 << 20;
    const auto place = ItemOf(PathWithValue);
    const auto value = place ? RegistryCalls::ReadValue(place->key, place->item, kRoom) : std::nullopt;
    if (!value || !IsText(static_cast<std::int32_t>(value->type))) return {};
    return FromCodePage(value->bytes.substr(0, value->bytes.find('\0')));
}

clsRegistry& Registry() {
    static clsRegistry registry;
    return registry;
}

RegistryTransaction::RegistryTransaction() { RegistryCalls::BeginTransaction(); }

RegistryTransaction::~RegistryTransaction() {
    if (!committed_) RegistryCalls::EndTransaction(false);
}

KeepResult RegistryTransaction::Commit() {
    committed_ = true;
    return RegistryCalls::EndTransaction(true);
}
