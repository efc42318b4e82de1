#include "registry/RegistryHive.h"

#include <filesystem>

#include "base/DataFolder.h"

namespace fs = std::filesystem;

namespace {

fs::path HivePath() {
    const fs::path folder = DataFolder();
    return folder.empty() ? folder : folder / "registry.sqlite";
}

}  // namespace

HiveImage& RegistryHive::FreshImage() {
    if (depth_ == 0) Refresh();
    return *image_;
}

void RegistryHive::Refresh() {
    if (state_ == kUnreadable) return;
    if (state_ == kUnopened) {
        file_ = std::make_unique<HiveFile>();
        Take(file_->Open(HivePath(), usable_));
    } else if (stale_ || file_->ChangedElsewhere()) {
        Take(file_->Load(usable_));
    }
}

void RegistryHive::Take(std::unique_ptr<HiveImage> image) {
    state_ = image ? kUsable : kUnreadable;
    image_ = image ? std::move(image) : std::make_unique<HiveImage>();
    stale_ = false;
}

void RegistryHive::Begin() {
    if (depth_++ > 0) return;
    abandoned_ = {};
    if (state_ == kUnopened) Refresh();
    writing_ = usable_.Kept() ? file_->Begin() : usable_;
    if (!writing_.Kept()) return;
    Refresh();
    if (usable_.Kept()) return;
    file_->Rollback();
    writing_ = usable_;
}

KeepResult RegistryHive::End(const KeepResult& ending) {
    if (abandoned_.Kept()) abandoned_ = ending;
    if (--depth_ > 0 || !writing_.Kept()) return writing_;
    const KeepResult result = abandoned_.Kept() ? file_->Commit(*image_) : abandoned_;
    if (result.Kept()) {
        image_->ChangesAreWritten();
    } else {
        file_->Rollback();
        stale_ = image_->IsChanged();
    }
    return result;
}

void RegistryHive::Close() {
    file_.reset();
    image_ = std::make_unique<HiveImage>();
    state_ = kUnopened;
    stale_ = false;
}

RegistryHive& Hive() {
    static RegistryHive hive;
    return hive;
}
