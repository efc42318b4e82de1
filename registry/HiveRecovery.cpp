#include "registry/HiveRecovery.h"

#include <set>
#include <string>
#include <utility>

#include "base/Text.h"
#include "registry/SettingsKey.h"

namespace {

// Keys of which only the values were found go below the settings, by a value that tells what they are.
const struct {
    const char* value;
    const wchar_t* prefix;
} kUnnamed[] = {{"Text", kNotePrefix}, {"PCName", kEntryPrefix}};
constexpr std::int64_t kMachine = 2;  // HKLM

std::int64_t RootOf(const HiveKey& key) { return key.depth <= 0 ? key.id : RootOf(*key.parent); }

std::string PathOf(const HiveKey& key) {
    return key.depth <= 0 ? std::string() : PathOf(*key.parent) + "\\" + key.name;
}

class Recovering {
  public:
    Recovering(const FoundRows& found, const HiveImage* state)
        : found_(found), state_(state), image_(found.Image()) {}

    Recovery Do() {
        if (!image_->IsWhole()) {
            const bool isComplete = found_.whole && image_->ChecksumsOfMissing().empty();
            for (HiveKey* const key : image_->Keys())
                if (key->checksum && *key->checksum != ChecksumOf(*key)) Repair(*key, *key->checksum);
            std::set<std::int64_t> rowless;
            for (const auto& [id, checksum] : image_->ChecksumsOfMissing()) rowless.insert(id);
            for (const auto& [id, values] : found_.values)
                if (!found_.whole && !image_->Find(id)) rowless.insert(id);
            for (const std::int64_t id : rowless) Restore(id);
            if (!isComplete) TakeRest();
        }
        Recovery recovery{nullptr, Report()};
        recovery.image = std::move(image_);
        return recovery;
    }

  private:
    void Set(HiveKey& key, const HiveValues& values) {
        for (const auto& [capitals, value] : values)
            image_->SetValue(key, value.name, value.type, value.data);
    }

    // A key that is not what it was. Its checksum tells a single wrong byte; else the state has it as it was,
    // or fills its gaps.
    void Repair(HiveKey& damaged, std::uint64_t checksum) {
        if (const auto repaired = RepairedByte(damaged, checksum)) {
            if (const HiveValue* const value = repaired->value)
                image_->SetValue(damaged, value->name, value->type, repaired->bytes);
            if (repaired->value || image_->RenameKey(damaged, repaired->bytes)) return;
        }
        const HiveKey* const before = state_ ? state_->Find(damaged.id) : nullptr;
        HiveKey* const key = before ? MoveTo(*before, damaged) : &damaged;
        if (before && before->values == key->values) return;
        if (before && ChecksumOf(*before) == checksum) {
            const HiveValues wrong = key->values;
            for (const auto& [capitals, value] : wrong) image_->DeleteValue(*key, value.name);
            Set(*key, before->values);
            fromState_.insert(key);
            return;
        }
        doubtful_.insert(key);
        if (before) Fill(*key, *before);
    }

    // Where the state has the key, should its name or the key above have changed.
    HiveKey* MoveTo(const HiveKey& before, HiveKey& key) {
        if (!key.parent || PathOf(before) == PathOf(key)) return &key;
        if (key.parent->id == before.parent->id && image_->RenameKey(key, before.name)) return &key;
        HiveKey* const moved = key.keys.empty() ? Create(before) : nullptr;
        if (!moved || !moved->values.empty()) return &key;
        Set(*moved, key.values);
        image_->DeleteKey(key);
        return moved;
    }

    // A key whose row is lost; its values may be there.
    void Restore(std::int64_t id) {
        const HiveKey* const before = state_ ? state_->Find(id) : nullptr;
        const auto values = found_.values.find(id);
        const auto checksum = image_->ChecksumsOfMissing().find(id);
        const bool isKnown = checksum != image_->ChecksumsOfMissing().end();
        HiveKey* key = before ? Create(*before) : nullptr;
        if (key && key->values.empty()) {
            Set(*key, before->values);
            fromState_.insert(key);
            if (isKnown && checksum->second == ChecksumOf(*before)) return;
        } else {
            key = values != found_.values.end() ? CreateUnnamed(id, values->second) : nullptr;
        }
        if (!key) {
            lost_ += isKnown;
            return;
        }
        doubtful_.insert(key);
        if (values == found_.values.end()) return;
        fromState_.erase(key);
        for (const auto& [name, value] : values->second)
            image_->SetValue(*key, value.name, value.type, value.data);
    }

    HiveKey* CreateUnnamed(std::int64_t id, const std::map<std::string, HiveValue>& values) {
        const std::wstring settings = std::wstring(kSettingsKey).substr(std::size(L"HKLM"));
        for (const auto& [name, prefix] : kUnnamed)
            if (values.contains(name))
                return image_->Create(*image_->Find(kMachine),
                                      ToUtf8(settings + prefix) + "-" + std::to_string(id));
        return nullptr;
    }

    HiveKey* Create(const HiveKey& like) { return image_->Create(*image_->Find(RootOf(like)), PathOf(like)); }

    // Where no checksum tells what the file held, the state has what it lacks.
    void TakeRest() {
        if (!state_) return;
        for (const HiveKey* const before : state_->Keys())
            if (const HiveKey* const key = Find(*before); key && key->values == before->values)
                confirmed_.insert(key);
        for (const HiveKey* const before : state_->Keys()) {
            HiveKey* key = Find(*before);
            if (before->values.empty() || (key && (key->checksum || confirmed_.contains(key)))) continue;
            // Notes are numbered anew when one goes: the same under another number is there already.
            if (!key && IsBeside(*before)) continue;
            if (!key) key = Create(*before);
            if (key) Fill(*key, *before);
        }
    }

    HiveKey* Find(const HiveKey& like) { return image_->Find(*image_->Find(RootOf(like)), PathOf(like)); }

    // Gives the key what it lacks.
    void Fill(HiveKey& key, const HiveKey& before) {
        const HiveValues newer = key.values;
        if (newer.empty()) fromState_.insert(&key);
        doubtful_.insert(&key);
        Set(key, before.values);
        Set(key, newer);
    }

    // True when the file has a key with these values beside it that stands for no other one.
    bool IsBeside(const HiveKey& before) {
        const HiveKey* const parent = Find(*before.parent);
        if (!parent) return false;
        for (const auto& [capitals, key] : parent->keys)
            if (key->values == before.values && !fromState_.contains(key.get()) &&
                confirmed_.insert(key.get()).second)
                return true;
        return false;
    }

    RecoveryReport Report() const {
        static constexpr const char* roots[] = {"HKCR", "HKCU", "HKLM", "HKU", "HKPD", "HKCC", "HKDD"};
        RecoveryReport report;
        report.lost = lost_;
        report.isComplete = found_.whole || image_->IsWhole();
        for (const HiveKey* const key : image_->Keys()) {
            if (key->values.empty()) {
                report.lost += doubtful_.contains(key);
                continue;
            }
            const std::wstring path = FromUtf8(roots[RootOf(*key)] + PathOf(*key));
            (fromState_.contains(key) ? report.fromState : report.fromFile).push_back(path);
            // In a file with damaged pages, only a checksum or the state tells that a key is what it was.
            const bool isUnknown = !found_.whole && !key->checksum && !confirmed_.contains(key);
            if (doubtful_.contains(key) || isUnknown) report.doubtful.push_back(path);
        }
        return report;
    }

    const FoundRows& found_;
    const HiveImage* state_;
    std::unique_ptr<HiveImage> image_;
    std::set<const HiveKey*> fromState_, doubtful_, confirmed_;
    int lost_ = 0;
};

}  // namespace

Recovery Recover(const FoundRows& found, const HiveImage* state) { return Recovering(found, state).Do(); }
