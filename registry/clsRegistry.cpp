#include "registry/clsRegistry.h"

#include <array>
#include <cstring>
#include <string_view>
#include <utility>

#include "base/twips.h"
#include "registry/RegistryCalls.h"

using namespace RegistryCalls;

namespace {

constexpr std::size_t kNameBuffer = 256;
constexpr std::size_t kTextBuffer = 4096;

Key RootOf(std::wstring_view name) {
    static constexpr std::pair<std::wstring_view, std::uint32_t> roots[] = {
        {L"HKLM", 2}, {L"HKCR", 0}, {L"HKCU", 1}, {L"HKU", 3}, {L"HKCC", 5}, {L"HKDD", 6}};
    for (const auto& [abbreviation, number] : roots)
        if (name == abbreviation) return RootKey(number);
    return 0;
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

// A registry path taken apart. For key operations `key` is all behind the root; for values, and for a key to
// be deleted, `item` is what follows the last backslash and `key` what lies between.
struct Place {
    Key root = 0;
    std::string key;
    std::string item;
};

Key RootOfPath(const std::wstring& path) {
    const std::size_t first = path.find(L'\\');
    return RootOf(first == std::wstring::npos || first == 0 ? path
                                                            : std::wstring_view(path).substr(0, first));
}

Place KeyPlace(const std::wstring& path) {
    const std::size_t first = path.find(L'\\');
    return {RootOfPath(path),
            first == std::wstring::npos ? std::string() : ToCodePage(path.substr(first + 1)),
            {}};
}

Place ItemPlace(const std::wstring& path) {
    Place place{RootOfPath(path), {}, {}};
    const std::size_t first = path.find(L'\\');
    const std::size_t last = path.rfind(L'\\');
    place.item = ToCodePage(last == std::wstring::npos ? path : path.substr(last + 1));
    if (CountOccurrences(path, L"\\") >= 2) place.key = ToCodePage(path.substr(first + 1, last - first - 1));
    return place;
}

// An opened key that closes itself.
class OpenedKey {
  public:
    enum Missing { Fail, Create };

    OpenedKey(const Place& place, Access access, Missing missing = Fail) {
        result_ = missing == Create ? RegistryCalls::CreateKey(place.root, place.key, access, key_)
                                    : OpenKey(place.root, place.key, access, key_);
    }
    ~OpenedKey() { CloseKey(key_); }
    OpenedKey(const OpenedKey&) = delete;
    OpenedKey& operator=(const OpenedKey&) = delete;

    Key Handle() const { return key_; }
    bool Opened() const { return result_ == kSuccess; }

  private:
    Key key_ = 0;
    long result_;
};

template <std::size_t size>
std::array<char, size> Blanks() {
    std::array<char, size> buffer;
    buffer.fill(' ');
    return buffer;
}

// What a call wrote into a buffer of blanks: all before the first NUL, and nothing when there is none.
std::wstring TrimNull(std::string_view buffer) {
    const std::size_t end = buffer.find('\0');
    return end == std::string_view::npos ? std::wstring() : FromCodePage(std::string(buffer.substr(0, end)));
}

template <std::size_t size>
std::wstring TrimNull(const std::array<char, size>& buffer) {
    return TrimNull(std::string_view(buffer.data(), size));
}

// Any other result of an enumeration repeats for every index.
bool DeliversItem(long result) { return result == kSuccess || result == kMoreData; }

bool IsText(std::int32_t type) {
    return type == REG_TYPE_SZ || type == REG_TYPE_EXPAND_SZ || type == REG_TYPE_MULTI_SZ;
}

bool Write(const std::wstring& path, std::int32_t type, const void* data, std::size_t size) {
    const Place place = ItemPlace(path);
    if (!place.root) return false;
    const OpenedKey key(place, kSetValue, OpenedKey::Create);
    RegistryCalls::SetValue(key.Handle(), place.item, static_cast<std::uint32_t>(type), data,
                            static_cast<std::uint32_t>(size));
    return true;
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
    ValArray.assign(1, std::wstring());
    const Place place = KeyPlace(path);
    if (!place.root) return false;
    const OpenedKey key(place, kQueryValue);
    for (std::uint32_t index = 0;; ++index) {
        auto name = Blanks<kNameBuffer>();
        auto data = Blanks<20>();
        std::uint32_t nameSize = kNameBuffer, dataSize = 20, type = 0;
        if (!DeliversItem(EnumValue(key.Handle(), index, name.data(), nameSize, type, data.data(), dataSize)))
            return true;
        ValArray.resize(index + 1);
        ValArray[index] = TrimNull(name);
    }
}

std::int32_t clsRegistry::EnumKeys(const std::wstring& path, std::vector<std::wstring>& KeyArray) {
    KeyArray.assign(1, std::wstring());
    const Place place = KeyPlace(path);
    if (!place.root) return -1;
    const OpenedKey key(place, kEnumerateSubKeys);
    if (!key.Opened()) return -1;
    for (std::uint32_t index = 0;; ++index) {
        auto name = Blanks<kNameBuffer>();
        std::uint32_t nameSize = kNameBuffer;
        if (!DeliversItem(EnumKey(key.Handle(), index, name.data(), nameSize)))
            return static_cast<std::int32_t>(index);
        KeyArray.resize(index + 1);
        KeyArray[index] = TrimNull(name);
    }
}

bool clsRegistry::KeyExists(const std::wstring& path) {
    const Place place = KeyPlace(path);
    return place.root && OpenedKey(place, kQueryValue).Opened();
}

bool clsRegistry::DeleteKey(const std::wstring& path) {
    const Place place = ItemPlace(path);
    if (!place.root) return false;
    std::vector<std::wstring> subKeys;
    EnumKeys(path, subKeys);
    const std::wstring above = path.back() == L'\\' ? path : path + L"\\";
    for (const std::wstring& name : subKeys)
        if (!name.empty()) DeleteKey(above + name);
    const OpenedKey parent(place, kWrite);
    RegistryCalls::DeleteKey(parent.Handle(), place.item);
    return true;
}

bool clsRegistry::DeleteValue(const std::wstring& PathWithValue) {
    const Place place = ItemPlace(PathWithValue);
    if (!place.root) return false;
    const OpenedKey key(place, kWrite);
    RegistryCalls::DeleteValue(key.Handle(), place.item);
    return true;
}

RegistryValue clsRegistry::GetValue(const std::wstring& PathWithValue, std::int32_t RegType) {
    const Place place = ItemPlace(PathWithValue);
    if (!place.root) return {};
    const OpenedKey key(place, kQueryValue);
    std::uint32_t type = 0;
    if (IsText(RegType)) {
        std::string text(kTextBuffer * kBytesOfCharacter, ' ');
        auto size = static_cast<std::uint32_t>(text.size());
        QueryValue(key.Handle(), place.item, type, text.data(), size);
        // The limit is one of characters: what one platform gives back the others do, too.
        std::wstring read = TrimNull(text);
        return read.size() < kTextBuffer ? read : std::wstring();
    }
    std::int32_t number = 0;
    std::uint32_t size = sizeof number;
    QueryValue(key.Handle(), place.item, type, &number, size);
    return number;
}

bool clsRegistry::SetValue(const std::wstring& PathWithValue, std::int32_t RegType,
                           const std::wstring& Value) {
    const std::string bytes = ToCodePage(Value);
    return Write(PathWithValue, RegType, bytes.data(), bytes.size());
}

bool clsRegistry::SetValue(const std::wstring& PathWithValue, std::int32_t RegType, double Value) {
    const std::int32_t number = RoundToEven(Value);
    return Write(PathWithValue, RegType, &number, sizeof number);
}

bool clsRegistry::CreateKey(const std::wstring& path) {
    const Place place = KeyPlace(path);
    if (!place.root) return false;
    OpenedKey(place, kQueryValue, OpenedKey::Create);
    return true;
}

clsRegistry& Registry() {
    static clsRegistry registry;
    return registry;
}

RegistryTransaction::RegistryTransaction() { BeginTransaction(); }

RegistryTransaction::~RegistryTransaction() {
    if (!committed_) EndTransaction(false);
}

KeepResult RegistryTransaction::Commit() {
    committed_ = true;
    return EndTransaction(true);
}
