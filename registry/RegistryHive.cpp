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
        Take(file_->Open(HivePath()));
    } else if (stale_ || file_->ChangedElsewhere()) {
        Take(file_->Load());
    }
}

void RegistryHive::Take(std::unique_ptr<HiveImage> image) {
    state_ = image ? kUsable : kUnreadable;
    image_ = image ? std::move(image) : std::make_unique<HiveImage>();
    stale_ = false;
    ++generation_;
}

void RegistryHive::Begin() {
    if (depth_++ > 0) return;
    abandoned_ = false;
    if (state_ == kUnopened) Refresh();
    writing_ = state_ == kUsable && file_->Begin();
    if (!writing_) return;
    Refresh();
    if (state_ == kUsable) return;
    file_->Rollback();
    writing_ = false;
}

bool RegistryHive::End(bool keep) {
    if (!keep) abandoned_ = true;
    if (--depth_ > 0) return !abandoned_;
    if (!writing_) return false;
    writing_ = false;
    if (!abandoned_ && file_->Commit(*image_)) {
        image_->ChangesAreWritten();
        return true;
    }
    file_->Rollback();
    stale_ = true;
    return false;
}

void RegistryHive::Close() {
    file_.reset();
    image_ = std::make_unique<HiveImage>();
    state_ = kUnopened;
    stale_ = false;
    ++generation_;
}

RegistryHive& Hive() {
    static RegistryHive hive;
    return hive;
}
