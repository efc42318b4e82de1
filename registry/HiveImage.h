#pragma once
// The hive in memory: a tree of keys with their values, as the hive file held it last, and what has been
// changed since. Changing costs memory accesses only; writing the changes down later touches just what
// differs, so that rewriting everything with the same content writes nothing.
//
// Names and data are bytes; names are UTF-8 and compare without case. The first spelling of a name stays
// until it is deleted.

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct HiveValue {
    std::string name;
    std::uint32_t type = 0;
    std::string data;

    bool operator==(const HiveValue&) const = default;
};

// Where changes are written; every call says whether it succeeded.
class HiveWriter {
  public:
    virtual ~HiveWriter() = default;
    virtual bool AddKey(std::int64_t id, std::int64_t parent, const std::string& name) = 0;
    virtual bool RenameKey(std::int64_t id, const std::string& name) = 0;
    virtual bool RemoveKey(std::int64_t id) = 0;  // with its values
    virtual bool PutValue(std::int64_t key, const HiveValue& value) = 0;
    virtual bool RemoveValue(std::int64_t key, const std::string& name) = 0;
    virtual bool PutChecksum(std::int64_t key, std::uint64_t checksum) = 0;
};

// Keys and values by their names in capitals.
struct HiveKey;
using HiveKeys = std::map<std::string, std::unique_ptr<HiveKey>, std::less<>>;
using HiveValues = std::map<std::string, HiveValue, std::less<>>;

struct HiveKey {
    std::int64_t id = 0;
    HiveKey* parent = nullptr;
    int depth = 0;  // 0 for a root
    std::string name;
    HiveKeys keys;
    HiveValues values;

    // What the file holds, as far as it may differ.
    bool touched = false;
    bool deleted = false;
    bool inFile = false;
    std::string storedName;
    HiveValues storedValues;
    HiveKeys deletedKeys;
    std::optional<std::uint64_t> checksum;  // none: somebody else has changed the key
};

// Of a key and its values; a single changed byte always makes another one. The values' order does not matter.
std::uint64_t ChecksumOf(const HiveKey& key);

// A key's name, or the data of one of its values, with one byte as it must have been for this checksum.
struct RepairedBytes {
    const HiveValue* value = nullptr;  // of the key; null for the name
    std::string bytes;
};
// Nothing when no single byte explains the checksum, or more than one: near their ends, changes of two values
// or of the name can make the same difference.
std::optional<RepairedBytes> RepairedByte(const HiveKey& key, std::uint64_t checksum);

class HiveImage {
  public:
    static constexpr std::int64_t kRoots = 7;
    static constexpr std::size_t kLongestKeyName = 255;
    static constexpr int kDeepestKey = 512;
    // Under this number stands the sum of all keys' checksums. Whoever changes rows without writing checksums
    // takes it away.
    static constexpr std::int64_t kTotal = -1;

    HiveImage();

    // For the loader. A key must come after its parent; one with an unknown parent, an impossible name or the
    // name of another is left out, and so are values of such keys.
    void LoadKey(std::int64_t id, std::int64_t parent, std::string name);
    void LoadValue(std::int64_t key, HiveValue value);
    void LoadChecksum(std::int64_t key, std::uint64_t checksum);

    // After loading: false when a checksum belongs to something else than what was loaded.
    bool IsIntact() const;
    // After loading: true when nothing is missing, nothing is too much and all of it is intact.
    bool IsWhole() const;
    // The sum of all checksums in the file; 0 when somebody took it away.
    std::uint64_t Total() const { return total_.value_or(0); }
    // The checksums of keys that were not loaded.
    const std::map<std::int64_t, std::uint64_t>& ChecksumsOfMissing() const { return missing_; }

    // The key with this number, or null; roots have the numbers 0 to 6.
    HiveKey* Find(std::int64_t id) const;

    // All keys with the roots, by their numbers.
    std::vector<HiveKey*> Keys() const;

    // The key below, null when it is missing. Empty components of the path do not count.
    HiveKey* Find(HiveKey& from, std::string_view path);

    // The same, making what is missing. Null when a name is too long or the place too deep; nothing is made
    // then.
    HiveKey* Create(HiveKey& from, std::string_view path);

    void SetValue(HiveKey& key, const std::string& name, std::uint32_t type, std::string_view data);
    static const HiveValue* FindValue(const HiveKey& key, const std::string& name);
    bool DeleteValue(HiveKey& key, const std::string& name);

    // Deletes a key without subkeys that is no root.
    void DeleteKey(HiveKey& key);

    // Another name for a key that is no root. False when there is one of that name beside it.
    bool RenameKey(HiveKey& key, const std::string& name);

    bool IsChanged() const { return !touched_.empty(); }

    // A number that no other image has, and this one had never before its last change.
    std::uint64_t Version() const { return version_; }

    // Writes what differs from the file, and the checksums that are missing. False as soon as the writer
    // fails.
    bool WriteChanges(HiveWriter& writer);

    // From now on the file holds what the image holds.
    void ChangesAreWritten();

    // From now on the file holds nothing but the roots.
    void ForgetFile();

  private:
    void Touch(HiveKey& key);
    HiveKey* CreateChild(HiveKey& parent, std::string_view name);

    static std::uint64_t NextVersion();

    HiveKey top_;  // holds the roots
    std::uint64_t version_ = NextVersion();
    std::unordered_map<std::int64_t, HiveKey*> byId_;
    std::vector<HiveKey*> touched_;
    std::int64_t lastId_ = 0;
    std::optional<std::uint64_t> total_;  // in the file
    std::map<std::int64_t, std::uint64_t> missing_;

    // What was found last: values are read and written one after the other under the same key.
    const HiveKey* lastFrom_ = nullptr;
    std::string lastPath_;
    HiveKey* lastFound_ = nullptr;
};
