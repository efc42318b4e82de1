#include "registry/HiveImage.h"

#include <algorithm>
#include <utility>

#include "base/ByteFields.h"
#include "base/CaseFold.h"

namespace {

// Takes the first component off a path; empty ones are skipped. An empty result is the end.
std::string_view TakeComponent(std::string_view& path) {
    const std::size_t start = std::min(path.find_first_not_of('\\'), path.size());
    path.remove_prefix(start);
    const std::string_view component = path.substr(0, path.find('\\'));
    path.remove_prefix(component.size());
    return component;
}

// What the checksum of a key has in front of its name, and that of a value in front of its data.
std::string StartOf(const HiveKey& key) {
    std::string start;
    AddNumber(start, key.id);
    AddNumber(start, key.parent ? key.parent->id : -1);
    AddNumber(start, std::uint64_t{key.name.size()});
    return start;
}

std::string StartOf(const HiveValue& value) {
    std::string start;
    AddNumber(start, std::uint64_t{value.name.size()});
    start += value.name;
    AddNumber(start, std::uint64_t{value.type});
    AddNumber(start, std::uint64_t{value.data.size()});
    return start;
}

bool WriteValues(const HiveKey& key, HiveWriter& writer) {
    auto stored = key.storedValues.begin();
    auto value = key.values.begin();
    while (stored != key.storedValues.end() || value != key.values.end()) {
        const bool gone =
            value == key.values.end() || (stored != key.storedValues.end() && stored->first < value->first);
        const bool added = !gone && (stored == key.storedValues.end() || value->first < stored->first);
        if (gone) {
            if (!writer.RemoveValue(key.id, stored->second.name)) return false;
            ++stored;
            continue;
        }
        const bool renamed = !added && stored->second.name != value->second.name;
        if (renamed && !writer.RemoveValue(key.id, stored->second.name)) return false;
        const bool differs = added || stored->second != value->second;
        if (differs && !writer.PutValue(key.id, value->second)) return false;
        if (!added) ++stored;
        ++value;
    }
    return true;
}

bool WriteKey(const HiveKey& key, HiveWriter& writer) {
    if (key.deleted) return !key.inFile || writer.RemoveKey(key.id);
    if (!key.inFile && !writer.AddKey(key.id, key.parent->id, key.name)) return false;
    if (key.inFile && key.name != key.storedName && !writer.RenameKey(key.id, key.name)) return false;
    return WriteValues(key, writer);
}

}  // namespace

std::uint64_t ChecksumOf(const HiveKey& key) {
    std::uint64_t sum = CheckSum(StartOf(key) + key.name);
    for (const auto& [capitals, value] : key.values) sum += CheckSum(StartOf(value) + value.data);
    return sum;
}

std::optional<RepairedBytes> RepairedByte(const HiveKey& key, std::uint64_t checksum) {
    const std::uint64_t difference = checksum - ChecksumOf(key);
    // The inverse of the prime takes a step back: modulo 2^64 both make 1.
    constexpr std::uint64_t kInverse = 0xCE965057AFF6957Bu;
    static_assert(kSumPrime * kInverse == 1);
    std::optional<RepairedBytes> found;
    int count = 0;
    const auto search = [&](const std::string& start, const std::string& bytes, const HiveValue* value) {
        // The states before each byte, from the front; then back from what the hash should be.
        std::vector<std::uint64_t> states;
        std::uint64_t state = CheckSum(start);
        for (const char c : bytes) {
            states.push_back(state);
            state = SumWith(state, static_cast<unsigned char>(c));
        }
        state += difference;
        for (std::size_t i = bytes.size(); i-- > 0;) {
            state *= kInverse;
            if (const std::uint64_t byte = state ^ states[i]; byte < 256) {
                ++count;
                found = {value, bytes};
                found->bytes[i] = static_cast<char>(byte);
            }
            state ^= static_cast<unsigned char>(bytes[i]);
        }
    };
    search(StartOf(key), key.name, nullptr);
    for (const auto& [capitals, value] : key.values) search(StartOf(value), value.data, &value);
    return count == 1 ? found : std::nullopt;
}

std::uint64_t HiveImage::NextVersion() {
    static std::uint64_t last = 0;
    return ++last;
}

HiveImage::HiveImage() {
    top_.depth = -1;
    for (lastId_ = 0; lastId_ < kRoots; ++lastId_) {
        auto root = std::make_unique<HiveKey>();
        root->id = lastId_;
        root->inFile = true;
        byId_[lastId_] = root.get();
        top_.keys[std::to_string(lastId_)] = std::move(root);
    }
}

void HiveImage::LoadKey(std::int64_t id, std::int64_t parent, std::string name) {
    lastId_ = std::max(lastId_, id);
    HiveKey* const above = Find(parent);
    if (!above || Find(id) || name.empty() || name.size() > kLongestKeyName || above->depth >= kDeepestKey ||
        name.find_first_of(std::string_view("\\\0", 2)) != std::string::npos)
        return;
    auto [place, isNew] = above->keys.try_emplace(Utf8InCapitals(name));
    if (!isNew) return;
    place->second = std::make_unique<HiveKey>();
    HiveKey& key = *place->second;
    key.id = id;
    key.parent = above;
    key.depth = above->depth + 1;
    key.name = key.storedName = std::move(name);
    key.inFile = true;
    byId_[id] = &key;
}

void HiveImage::LoadValue(std::int64_t keyId, HiveValue value) {
    if (HiveKey* const key = Find(keyId))
        key->values.try_emplace(Utf8InCapitals(value.name), std::move(value));
}

void HiveImage::LoadChecksum(std::int64_t id, std::uint64_t checksum) {
    if (id == kTotal)
        total_ = checksum;
    else if (HiveKey* const key = Find(id))
        key->checksum = checksum;
    else
        missing_[id] = checksum;
}

bool HiveImage::IsIntact() const {
    return missing_.empty() && std::all_of(byId_.begin(), byId_.end(), [](const auto& key) {
               return !key.second->checksum || *key.second->checksum == ChecksumOf(*key.second);
           });
}

bool HiveImage::IsWhole() const {
    std::uint64_t total = 0;
    for (const auto& [id, key] : byId_) total += ChecksumOf(*key);
    return total_ == total && IsIntact();
}

std::vector<HiveKey*> HiveImage::Keys() const {
    std::vector<HiveKey*> keys;
    for (const auto& [id, key] : byId_) keys.push_back(key);
    std::sort(keys.begin(), keys.end(), [](const HiveKey* a, const HiveKey* b) { return a->id < b->id; });
    return keys;
}

HiveKey* HiveImage::Find(std::int64_t id) const {
    const auto found = byId_.find(id);
    return found == byId_.end() ? nullptr : found->second;
}

HiveKey* HiveImage::Find(HiveKey& from, std::string_view path) {
    if (lastFound_ && lastFrom_ == &from && lastPath_ == path) return lastFound_;
    HiveKey* key = &from;
    std::string_view rest = path;
    for (std::string_view name = TakeComponent(rest); !name.empty(); name = TakeComponent(rest)) {
        const auto found = key->keys.find(Utf8InCapitals(name));
        if (found == key->keys.end()) return nullptr;
        key = found->second.get();
    }
    lastFrom_ = &from;
    lastPath_ = path;
    lastFound_ = key;
    return key;
}

HiveKey* HiveImage::Create(HiveKey& from, std::string_view path) {
    int depth = from.depth;
    std::string_view rest = path;
    for (std::string_view name = TakeComponent(rest); !name.empty(); name = TakeComponent(rest))
        if (name.size() > kLongestKeyName || ++depth > kDeepestKey) return nullptr;
    HiveKey* key = &from;
    for (std::string_view name = TakeComponent(path); !name.empty(); name = TakeComponent(path))
        key = CreateChild(*key, name);
    return key;
}

HiveKey* HiveImage::CreateChild(HiveKey& parent, std::string_view name) {
    std::string capitals = Utf8InCapitals(name);
    auto place = parent.keys.lower_bound(capitals);
    if (place != parent.keys.end() && place->first == capitals) return place->second.get();

    // A key that was deleted since the last writing comes back, so that what it held can be compared.
    std::unique_ptr<HiveKey> key;
    if (auto deleted = parent.deletedKeys.extract(capitals))
        key = std::move(deleted.mapped());
    else
        key = std::make_unique<HiveKey>();
    if (!key->parent) {
        key->id = ++lastId_;
        key->parent = &parent;
        key->depth = parent.depth + 1;
    }
    key->deleted = false;
    key->name = name;
    byId_[key->id] = key.get();
    Touch(*key);
    return parent.keys.emplace_hint(place, std::move(capitals), std::move(key))->second.get();
}

void HiveImage::SetValue(HiveKey& key, const std::string& name, std::uint32_t type, std::string_view data) {
    Touch(key);
    auto [place, isNew] = key.values.try_emplace(Utf8InCapitals(name));
    if (isNew) {
        place->second.name = name;
    }
    place->second.type = type;
    place->second.data = data;
}

const HiveValue* HiveImage::FindValue(const HiveKey& key, const std::string& name) {
    const auto found = key.values.find(Utf8InCapitals(name));
    return found == key.values.end() ? nullptr : &found->second;
}

bool HiveImage::DeleteValue(HiveKey& key, const std::string& name) {
    const auto found = key.values.find(Utf8InCapitals(name));
    if (found == key.values.end()) return false;
    Touch(key);
    key.values.erase(found);
    return true;
}

void HiveImage::DeleteKey(HiveKey& key) {
    HiveKey& parent = *key.parent;
    lastFound_ = nullptr;
    if (!key.touched) {
        key.touched = true;
        touched_.push_back(&key);
        key.storedValues = std::move(key.values);
    }
    key.values.clear();
    key.deleted = true;
    byId_.erase(key.id);
    Touch(parent);
    auto node = parent.keys.extract(Utf8InCapitals(key.name));
    parent.deletedKeys.insert(std::move(node));
}

void HiveImage::Touch(HiveKey& key) {
    version_ = NextVersion();
    if (key.touched) return;
    key.touched = true;
    touched_.push_back(&key);
    key.storedValues = key.values;
}

bool HiveImage::RenameKey(HiveKey& key, const std::string& name) {
    HiveKeys& siblings = key.parent->keys;
    std::string capitals = Utf8InCapitals(name);
    const auto taken = siblings.find(capitals);
    if (taken != siblings.end() && taken->second.get() != &key) return false;
    lastFound_ = nullptr;
    Touch(key);
    auto node = siblings.extract(Utf8InCapitals(key.name));
    node.key() = std::move(capitals);
    siblings.insert(std::move(node));
    key.name = name;
    return true;
}

bool HiveImage::WriteChanges(HiveWriter& writer) {
    for (HiveKey* key : touched_) {
        if (!WriteKey(*key, writer)) return false;
        if (key->deleted || key->checksum != ChecksumOf(*key)) key->checksum.reset();
    }
    std::uint64_t total = 0;
    for (const auto& [id, key] : byId_) {
        if (!key->checksum) {
            key->checksum = ChecksumOf(*key);
            if (!writer.PutChecksum(id, *key->checksum)) return false;
        }
        total += *key->checksum;
    }
    if (total_ != total && !writer.PutChecksum(kTotal, total)) return false;
    total_ = total;
    return true;
}

void HiveImage::ChangesAreWritten() {
    // Deleted keys die with what is above them, so no pointer to one is looked at any more from here on.
    std::erase_if(touched_, [](const HiveKey* key) { return key->deleted; });
    for (HiveKey* key : touched_) {
        key->touched = false;
        key->inFile = true;
        key->storedName = key->name;
        key->storedValues.clear();
        key->deletedKeys.clear();
    }
    touched_.clear();
}

void HiveImage::ForgetFile() {
    ChangesAreWritten();
    total_.reset();
    missing_.clear();
    for (const auto& [id, key] : byId_) {
        key->inFile = id < kRoots;
        key->checksum.reset();
        key->touched = true;
        touched_.push_back(key);
    }
}
