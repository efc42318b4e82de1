#include "registry/RegistryHive.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include "base/DataFolder.h"
#include "base/FileName.h"
#include "registry/HivePages.h"
#include "registry/HiveSeal.h"
#include "registry/HiveStates.h"

namespace fs = std::filesystem;

namespace {

constexpr std::chrono::milliseconds kLongestWait{100};
// A state is not older than ten seconds behind the newest save.
constexpr std::chrono::milliseconds kStatePause{8'000}, kPauseAfterFailure{60'000};

fs::path HivePath() {
    const fs::path folder = DataFolder();
    return folder.empty() ? folder : folder / "registry.sqlite";
}

HiveDeadline SoonEnough() { return std::chrono::steady_clock::now() + kLongestWait; }

}  // namespace

HiveImage& RegistryHive::FreshImage() {
    if (depth_ == 0) Refresh(SoonEnough());
    return *image_;
}

KeepResult RegistryHive::Refresh(HiveDeadline deadline) {
    if (!opened_) Open(deadline);
    if (rewriting_ || !file_ || (!stale_ && !file_->ChangedElsewhere())) return {};
    std::unique_ptr<HiveImage> image;
    const KeepResult result = file_->Load(image);
    if (result.Kept()) {
        image_ = std::move(image);
        stale_ = false;
    } else if (result.failure == KeepFailure::Damaged) {
        file_->Rollback();
        file_->LeaveAsItIs();
        Open(deadline);
        return file_ ? KeepResult{} : failure_;
    }
    return result;
}

void RegistryHive::Open(HiveDeadline deadline) {
    file_.reset();
    Take(OpenHive(HivePath(), deadline));
}

void RegistryHive::Take(OpenedHive opened) {
    // What was read once is known, also when it cannot be read now.
    if (!opened_ || unread_) unread_ = !opened.image;
    opened_ = true;
    file_ = std::move(opened.file);
    path_ = opened.path;
    if (opened.image) image_ = std::move(opened.image);
    failure_ = OfThisFile(opened.result);
    if (opened.report) report_ = std::move(opened.report);
    stale_ = false;
    if (file_ && image_->Keys().size() > static_cast<std::size_t>(HiveImage::kRoots) && !IsStateNew(path_))
        StateIsDue(kStatePause);
}

void RegistryHive::RewriteNext(RecoveryReport::Event event, const std::string& detail) {
    // Closing it would bring the log into it, or remove the log of another file.
    file_->LeaveAsItIs();
    file_.reset();
    // SQLite calls it damage, too, when the disk does not give what is on it. Then it is opened again later.
    if (event != RecoveryReport::Damaged || ReadPages(path_).readable) rewriting_ = Rewriting{event, detail};
}

void RegistryHive::Begin() {
    if (depth_++ > 0) return;
    abandoned_ = {};
    writing_ = Prepare();
}

KeepResult RegistryHive::Prepare() {
    const HiveDeadline deadline = SoonEnough();
    if (!opened_ || (!file_ && !rewriting_ && !unread_)) Open(deadline);
    if (file_ && file_->HasMoved()) RewriteNext(RecoveryReport::Replaced, "the file is another one");
    if (rewriting_) return {};
    if (!file_) return failure_;
    KeepResult result = BeginInFile(deadline);
    if (result.failure == KeepFailure::Damaged && file_) result = BeginInFile(deadline);
    if (result.failure == KeepFailure::Damaged && file_)
        RewriteNext(RecoveryReport::Damaged, result.detail);
    else if (!result.Kept() && result.failure != KeepFailure::Locked)
        file_.reset();  // what SQLite could not do once when it opened it, it does not try again
    return rewriting_ ? KeepResult{} : result;
}

KeepResult RegistryHive::BeginInFile(HiveDeadline deadline) {
    KeepResult result = file_->Begin(deadline);
    if (result.Kept()) result = Refresh(deadline);
    // A damaged file may have been replaced meanwhile.
    if (result.Kept() && !file_->InTransaction()) result = file_->Begin(deadline);
    if (!result.Kept() && file_) file_->Rollback();
    return result;
}

KeepResult RegistryHive::End(const KeepResult& ending) {
    if (abandoned_.Kept()) abandoned_ = ending;
    if (--depth_ > 0) return writing_;
    if (!writing_.Kept()) return failure_ = OfThisFile(writing_);
    if (!abandoned_.Kept()) {
        if (file_) file_->Rollback();
        stale_ = image_->IsChanged();
        return abandoned_;
    }
    const std::uint64_t before = image_->Total();
    KeepResult result = rewriting_ ? Rewrite() : file_->Commit(*image_);
    // A full disk may still have room in the log, once that begins anew.
    if (file_ && (result.failure == KeepFailure::Damaged ||
                  (result.failure == KeepFailure::DiskFull && file_->RestartLog())))
        result = CommitAgain(result);
    if (result.failure == KeepFailure::Damaged && file_) {
        RewriteNext(RecoveryReport::Damaged, result.detail);
        if (rewriting_) result = Rewrite();
    }
    stale_ = !result.Kept() && image_->IsChanged();
    if (image_->Total() != before && !stateDue_) StateIsDue(kStatePause);
    return failure_ = OfThisFile(result);
}

KeepResult RegistryHive::CommitAgain(const KeepResult& before) {
    if (!file_->Begin(SoonEnough()).Kept()) return before;
    if (!file_->ChangedElsewhere()) return file_->Commit(*image_);
    file_->Rollback();
    return before;
}

KeepResult RegistryHive::Rewrite() {
    const Rewriting why = *rewriting_;
    OpenedHive opened = RewriteHive(HivePath(), *image_, why.event, why.detail, SoonEnough());
    const KeepResult result = opened.result;
    if (opened.file) {
        rewriting_.reset();
        Take(std::move(opened));
    }
    return result;
}

KeepResult RegistryHive::OfThisFile(KeepResult result) const {
    if (!result.Kept()) result.file = FileName(path_);
    return result;
}

RegistryHealth RegistryHive::Health() {
    FreshImage();
    return {unread_ ? failure_ : KeepResult{}, failure_};
}

KeepResult RegistryHive::ReadAgain() {
    if (!opened_ || unread_) Open(SoonEnough());
    return unread_ ? failure_ : KeepResult{};
}

void RegistryHive::WhenStateIsDue(std::function<void(std::chrono::milliseconds)> due) {
    whenStateIsDue_ = std::move(due);
    if (stateDue_) StateIsDue(kStatePause);
}

void RegistryHive::StateIsDue(std::chrono::milliseconds pause) {
    stateDue_ = true;
    if (whenStateIsDue_) whenStateIsDue_(pause);
}

KeepResult RegistryHive::KeepState() {
    if (!stateDue_) return {};
    KeepResult result = file_ && depth_ == 0 ? ::KeepState(*file_, path_) : failure_;
    if (file_ && result.Kept()) {
        stateDue_ = false;
        // So the log stays short, and the file grows while there is room for it.
        if (file_->RestartLog()) MarkStateNew(path_);
        return result;
    }
    if (result.failure == KeepFailure::Damaged && file_) {
        RewriteNext(RecoveryReport::Damaged, "the file was damaged while it was open");
        // At once: there may be no further save, and the memory has what the file has lost.
        if (rewriting_ && !stale_) result = Rewrite();
    }
    StateIsDue(kPauseAfterFailure);
    return result;
}

void RegistryHive::Close() {
    if (file_) {
        file_.reset();
        const HiveLock lock(path_, SoonEnough());
        if (lock.Result().Kept() && !stale_) SealHive(path_, *image_);
        if (!stateDue_) MarkStateNew(path_);
    }
    opened_ = unread_ = stale_ = false;
    rewriting_.reset();
    report_.reset();
    stateDue_ = false;
    failure_ = {};
    image_ = std::make_unique<HiveImage>();
}

RegistryHive& Hive() {
    static RegistryHive hive;
    return hive;
}
