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
};

class HiveImage {
  public:
    static constexpr std::size_t kLongestKeyName = 255;
    static constexpr int kDeepestKey = 512;

    HiveImage();

    // For the loader. A key must come after its parent; one with an unknown parent, an impossible name or the
    // name of another is left out, and so are values of such keys.
    void LoadKey(std::int64_t id, std::int64_t parent, std::string name);
    void LoadValue(std::int64_t key, HiveValue value);

    // The key with this number, or null; roots have the numbers 0 to 6.
    HiveKey* Find(std::int64_t id) const;

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

    bool IsChanged() const { return !touched_.empty(); }

    // Writes what differs from the file. False as soon as the writer fails.
    bool WriteChanges(HiveWriter& writer) const;

    // From now on the file holds what the image holds.
    void ChangesAreWritten();

  private:
    void Touch(HiveKey& key);
    HiveKey* CreateChild(HiveKey& parent, std::string_view name);

    HiveKey top_;  // holds the roots
    std::unordered_map<std::int64_t, HiveKey*> byId_;
    std::vector<HiveKey*> touched_;
    std::int64_t lastId_ = 0;

    // What was found last: values are read and written one after the other under the same key.
    const HiveKey* lastFrom_ = nullptr;
    std::string lastPath_;
    HiveKey* lastFound_ = nullptr;
};
