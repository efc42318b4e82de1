// The nine calls over the hive.
#include <cstring>
#include <iterator>
#include <string_view>
#include <vector>

#include "base/basText.h"
#include "registry/RegistryCalls.h"
#include "registry/RegistryHive.h"

namespace RegistryCalls {

namespace {

constexpr Key kLastRoot = 6;

// Where an enumeration stands, so that the next index costs one step. Any other index, or a key that has
// changed meanwhile, is searched from the start.
template <class Items, std::uint64_t HiveKey::*revisionOf>
class Position {
  public:
    // The item at the index, or the end.
    typename Items::iterator Seek(HiveKey& key, Items& items, std::uint32_t index, std::uint64_t generation) {
        if (generation != generation_ || key.*revisionOf != revision_ || index < index_) {
            generation_ = generation;
            revision_ = key.*revisionOf;
            index_ = 0;
            at_ = items.begin();
        }
        for (; index_ < index && at_ != items.end(); ++index_) ++at_;
        return at_;
    }

  private:
    static constexpr std::uint64_t kNowhere = ~std::uint64_t{0};
    std::uint64_t generation_ = kNowhere, revision_ = kNowhere;
    std::uint32_t index_ = 0;
    typename Items::iterator at_;
};

struct OpenedKey {
    bool open = false;
    std::int64_t id = 0;
    std::uint32_t access = 0;
    Position<HiveKeys, &HiveKey::keysRevision> keys;
    Position<HiveValues, &HiveKey::valuesRevision> values;
};

// Handles are places in this list, counted from 1.
std::vector<OpenedKey>& OpenedKeys() {
    static std::vector<OpenedKey> keys;
    return keys;
}

std::vector<Key>& FreeHandles() {
    static std::vector<Key> handles;
    return handles;
}

OpenedKey* Opened(Key key) {
    return key > 0 && key <= OpenedKeys().size() && OpenedKeys()[key - 1].open ? &OpenedKeys()[key - 1]
                                                                               : nullptr;
}

Key NewHandle(const HiveKey& key, std::uint32_t access) {
    if (FreeHandles().empty()) {
        OpenedKeys().emplace_back();
        FreeHandles().push_back(OpenedKeys().size());
    }
    const Key handle = FreeHandles().back();
    FreeHandles().pop_back();
    OpenedKeys()[handle - 1] = {true, key.id, access, {}, {}};
    return handle;
}

// The key behind a handle that has the access asked for. Every way into the hive begins at a root, so that is
// where to look whether another process has written.
long Resolve(Key handle, std::uint32_t access, HiveKey*& key) {
    if (handle - RootKey(0) <= kLastRoot) {
        key = Hive().FreshImage().Find(static_cast<std::int64_t>(handle - RootKey(0)));
        return kSuccess;
    }
    const OpenedKey* const opened = Opened(handle);
    if (!opened) return kInvalidHandle;
    if ((opened->access & access) != access) return kAccessDenied;
    key = Hive().Image().Find(opened->id);
    return key ? kSuccess : kKeyDeleted;
}

// A write call is a transaction of its own where there is none around it.
template <class Change>
long Write(Change change) {
    Hive().Begin();
    const long result = Hive().MayWrite() ? change() : static_cast<long>(kIoFailed);
    KeepResult ending;
    if (result == kAccessDenied || result == kInvalidParameter)
        ending = {KeepFailure::Failed, "registry error " + std::to_string(result)};
    const KeepResult end = Hive().End(ending);
    return result == kSuccess && !end.Kept() ? static_cast<long>(kIoFailed) : result;
}

// Names end at their first NUL, as they do where they are handed over as C texts.
std::string Name(const std::string& text) { return text.substr(0, text.find('\0')); }

bool IsText(std::uint32_t type) { return type == 1 || type == 2 || type == 7; }

// Puts the data into the buffer, with a NUL behind a text that has none where there is room.
long Deliver(const HiveValue& value, std::uint32_t& type, void* data, std::uint32_t& size) {
    const auto needed = static_cast<std::uint32_t>(value.data.size());
    const std::uint32_t room = size;
    type = value.type;
    size = needed;
    if (!data) return kSuccess;
    if (needed > room) return kMoreData;
    if (needed > 0) std::memcpy(data, value.data.data(), needed);
    if (IsText(value.type) && needed < room && (needed == 0 || value.data.back() != '\0'))
        static_cast<char*>(data)[needed] = '\0';
    return kSuccess;
}

long DeliverName(const std::string& text, char* name, std::uint32_t& nameSize) {
    if (text.size() >= nameSize) return kMoreData;
    std::memcpy(name, text.c_str(), text.size() + 1);
    nameSize = static_cast<std::uint32_t>(text.size());
    return kSuccess;
}

// Roots keep no position between calls; opened keys do.
template <class Items, class Positions>
typename Items::iterator ItemAt(HiveKey& key, Items& items, Positions* position, std::uint32_t index) {
    Positions fresh;
    return (position ? *position : fresh).Seek(key, items, index, Hive().Generation());
}

}  // namespace

long OpenKey(Key parent, const std::string& subKey, std::uint32_t access, Key& result) {
    HiveKey* from = nullptr;
    if (const long failed = Resolve(parent, 0, from)) return failed;
    const HiveKey* const key = Hive().Image().Find(*from, Name(subKey));
    if (!key) return kFileNotFound;
    result = NewHandle(*key, access);
    return kSuccess;
}

long CreateKey(Key parent, const std::string& subKey, std::uint32_t access, Key& result) {
    if (OpenKey(parent, subKey, access, result) == kSuccess) return kSuccess;
    Key handle = 0;
    const long created = Write([&]() -> long {
        HiveKey* from = nullptr;
        if (const long failed = Resolve(parent, 0, from)) return failed;
        const HiveKey* const key = Hive().Image().Create(*from, Name(subKey));
        if (!key) return kInvalidParameter;
        handle = NewHandle(*key, access);
        return kSuccess;
    });
    if (created == kSuccess)
        result = handle;
    else
        CloseKey(handle);
    return created;
}

long QueryValue(Key key, const std::string& name, std::uint32_t& type, void* data, std::uint32_t& size) {
    HiveKey* place = nullptr;
    if (const long failed = Resolve(key, kQueryValue, place)) return failed;
    const HiveValue* const value = HiveImage::FindValue(*place, Name(name));
    return value ? Deliver(*value, type, data, size) : static_cast<long>(kFileNotFound);
}

long SetValue(Key key, const std::string& name, std::uint32_t type, const void* data, std::uint32_t size) {
    return Write([&]() -> long {
        HiveKey* place = nullptr;
        if (const long failed = Resolve(key, kSetValue, place)) return failed;
        Hive().Image().SetValue(*place, Name(name), type, {static_cast<const char*>(data), size});
        return kSuccess;
    });
}

long EnumKey(Key key, std::uint32_t index, char* name, std::uint32_t& nameSize) {
    HiveKey* place = nullptr;
    if (const long failed = Resolve(key, kEnumerateSubKeys, place)) return failed;
    OpenedKey* const opened = Opened(key);
    const auto item = ItemAt(*place, place->keys, opened ? &opened->keys : nullptr, index);
    return item == place->keys.end() ? static_cast<long>(kNoMoreItems)
                                     : DeliverName(item->second->name, name, nameSize);
}

long EnumValue(Key key, std::uint32_t index, char* name, std::uint32_t& nameSize, std::uint32_t& type,
               void* data, std::uint32_t& dataSize) {
    HiveKey* place = nullptr;
    if (const long failed = Resolve(key, kQueryValue, place)) return failed;
    OpenedKey* const opened = Opened(key);
    const auto item = ItemAt(*place, place->values, opened ? &opened->values : nullptr, index);
    if (item == place->values.end()) return kNoMoreItems;
    if (const long failed = DeliverName(item->second.name, name, nameSize)) return failed;
    return Deliver(item->second, type, data, dataSize);
}

long DeleteKey(Key parent, const std::string& subKey) {
    return Write([&]() -> long {
        HiveKey* from = nullptr;
        if (const long failed = Resolve(parent, 0, from)) return failed;
        HiveKey* const key = Hive().Image().Find(*from, Name(subKey));
        if (!key) return kFileNotFound;
        if (!key->parent || !key->keys.empty()) return kAccessDenied;
        Hive().Image().DeleteKey(*key);
        return kSuccess;
    });
}

long DeleteValue(Key key, const std::string& name) {
    return Write([&]() -> long {
        HiveKey* place = nullptr;
        if (const long failed = Resolve(key, kSetValue, place)) return failed;
        return Hive().Image().DeleteValue(*place, Name(name)) ? kSuccess : kFileNotFound;
    });
}

long CloseKey(Key key) {
    if (key - RootKey(0) <= kLastRoot) return kSuccess;
    OpenedKey* const opened = Opened(key);
    if (!opened) return kInvalidHandle;
    opened->open = false;
    FreeHandles().push_back(key);
    return kSuccess;
}

void BeginTransaction() { Hive().Begin(); }

KeepResult EndTransaction(bool keep) {
    return Hive().End(keep ? KeepResult{} : KeepResult{KeepFailure::Failed, "not committed"});
}

const std::size_t kBytesOfCharacter = 4;

std::string ToCodePage(const std::wstring& text) { return ToUtf8(text); }

std::wstring FromCodePage(const std::string& bytes) { return FromUtf8(bytes); }

}  // namespace RegistryCalls
