// The registry's calls over the hive.
#include "base/Text.h"
#include "registry/RegistryCalls.h"
#include "registry/RegistryHive.h"

namespace RegistryCalls {

namespace {

std::string Name(const std::string& text) { return text.substr(0, text.find('\0')); }

std::string Listed(const std::string& name) {
    return name.size() <= HiveImage::kLongestKeyName ? name : std::string();
}

HiveKey* Find(const Key& key) {
    HiveImage& image = Hive().FreshImage();
    return image.Find(*image.Find(static_cast<std::int64_t>(key.root)), Name(key.path));
}

HiveKey* Create(const Key& key) {
    HiveImage& image = Hive().Image();
    return image.Create(*image.Find(static_cast<std::int64_t>(key.root)), Name(key.path));
}

// A writing call is a transaction of its own where there is none around it. `change` tells whether the call
// was possible.
template <class Change>
void Write(Change change) {
    Hive().Begin();
    const bool possible = !Hive().MayWrite() || change();
    Hive().End(possible ? KeepResult{} : KeepResult{KeepFailure::Failed, "impossible key"});
}

}  // namespace

bool KeyExists(const Key& key) { return Find(key) != nullptr; }

std::optional<std::vector<std::string>> SubKeys(const Key& key) {
    const HiveKey* const found = Find(key);
    if (!found) return std::nullopt;
    std::vector<std::string> names;
    for (const auto& [capitals, child] : found->keys) names.push_back(Listed(child->name));
    return names;
}

std::vector<std::string> ValueNames(const Key& key) {
    std::vector<std::string> names;
    if (const HiveKey* const found = Find(key))
        for (const auto& [capitals, value] : found->values) names.push_back(Listed(value.name));
    return names;
}

std::optional<Value> ReadValue(const Key& key, const std::string& name, std::size_t room) {
    const HiveKey* const found = Find(key);
    const HiveValue* const value = found ? HiveImage::FindValue(*found, Name(name)) : nullptr;
    if (!value || value->data.size() > room) return std::nullopt;
    return Value{value->type, value->data};
}

void CreateKey(const Key& key) {
    if (!Find(key)) Write([&] { return Create(key) != nullptr; });
}

void SetValue(const Key& key, const std::string& name, const Value& value) {
    Write([&] {
        HiveKey* const place = Create(key);
        if (place) Hive().Image().SetValue(*place, Name(name), value.type, value.bytes);
        return place != nullptr;
    });
}

void DeleteValue(const Key& key, const std::string& name) {
    Write([&] {
        if (HiveKey* const found = Find(key)) Hive().Image().DeleteValue(*found, Name(name));
        return true;
    });
}

void DeleteKey(const Key& parent, const std::string& subKey) {
    Write([&] {
        HiveKey* const from = Find(parent);
        HiveKey* const key = from ? Hive().Image().Find(*from, Name(subKey)) : nullptr;
        if (!key) return true;
        if (!key->parent || !key->keys.empty()) return false;
        Hive().Image().DeleteKey(*key);
        return true;
    });
}

void BeginTransaction() { Hive().Begin(); }

KeepResult EndTransaction(bool keep) {
    return Hive().End(keep ? KeepResult{} : KeepResult{KeepFailure::Failed, "not committed"});
}

const std::size_t kBytesOfCharacter = 4;

std::string ToCodePage(const std::wstring& text) { return ToUtf8(text); }

std::wstring FromCodePage(const std::string& bytes) { return FromUtf8(bytes); }

}  // namespace RegistryCalls
