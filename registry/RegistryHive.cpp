#include "registry/RegistryHive.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

fs::path HivePath() {
    const fs::path folder = FolderOfHive();
    return folder.empty() ? folder : folder / "registry.sqlite";
}

}  // namespace

fs::path FolderOfHive() {
    const char* const data = std::getenv("XDG_DATA_HOME");
    fs::path folder = data ? data : "";
    if (!folder.is_absolute()) {
        const char* home = std::getenv("HOME");
        if (!home || !*home) {
            const passwd* const user = getpwuid(getuid());
            home = user ? user->pw_dir : nullptr;
        }
        if (!home || !fs::path(home).is_absolute()) return {};
        folder = fs::path(home) / ".local" / "share";
    }
    return folder / "kivora";
}

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
