#include "registry/HiveOpening.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "base/FileName.h"
#include "registry/HivePages.h"
#include "registry/HivePlace.h"
#include "registry/HiveRecovery.h"
#include "registry/HiveSeal.h"
#include "registry/HiveStates.h"

namespace fs = std::filesystem;

namespace {

// A new hive is made under this name first.
fs::path Unfinished(const fs::path& file) { return Beside(file, ".neu"); }

bool IsThere(const fs::path& path) {
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

bool IsEmptyOrMissing(const fs::path& file) {
    struct stat status {};
    return stat(file.c_str(), &status) != 0 ? errno == ENOENT : status.st_size == 0;
}

// What can be shown of a hive that cannot be used for now; null when that is nothing although there is
// something.
std::unique_ptr<HiveImage> ReadWithoutWriting(const fs::path& file) {
    if (!IsThere(file)) return std::make_unique<HiveImage>();
    if (access(file.c_str(), R_OK) != 0) return nullptr;
    const FoundRows found = ReadPages(file);
    if (!found.readable) return nullptr;
    auto image = found.Image();
    if (found.whole && image->IsIntact()) return image;
    return Recover(found, NewestState(file).get()).image;
}

// Opens what was just made or found.
OpenedHive OpenFile(const fs::path& file, HiveDeadline deadline) {
    OpenedHive opened;
    opened.path = file;
    opened.file = std::make_unique<HiveFile>();
    opened.result = opened.file->Open(file, opened.image, deadline);
    if (opened.result.Kept()) return opened;
    opened.file.reset();
    opened.image.reset();
    return opened;
}

// The same for one that may be damaged. A disk that once does not give what is on it looks like that, too.
OpenedHive OpenDoubtfulFile(const fs::path& file, HiveDeadline deadline) {
    OpenedHive opened = OpenFile(file, deadline);
    if (opened.result.failure == KeepFailure::Damaged) opened = OpenFile(file, deadline);
    return opened;
}

// Puts a new hive with this image where the file is, which is set aside.
OpenedHive Replace(const fs::path& file, HiveImage& image, RecoveryReport report, HiveDeadline deadline) {
    OpenedHive opened;
    opened.path = file;
    opened.result = HiveFile::Make(Unfinished(file), image);
    // Before the old one loses its log to the file that is set aside.
    if (opened.result.Kept()) opened.result = BringToDisk(Unfinished(file));
    const bool isThere = !IsEmptyOrMissing(file) || IsThere(Beside(file, "-wal"));
    fs::path aside;
    if (opened.result.Kept() && isThere) {
        const bool isDamaged = report.event != RecoveryReport::Replaced;
        opened.result = SetAside(file, isDamaged ? "defekt" : "ersetzt", aside);
    }
    if (opened.result.Kept())
        opened.result = PutHiveInPlace(Unfinished(file), file);
    else
        unlink(Unfinished(file).c_str());
    if (!opened.result.Kept()) return opened;
    opened = OpenFile(file, deadline);
    report.setAside = FileName(aside);
    opened.report = std::move(report);
    RemoveSeal(file);
    return opened;
}

// Brings back what a damaged or missing hive held.
OpenedHive RecoverHive(const fs::path& file, RecoveryReport::Event event, const std::string& detail,
                       HiveDeadline deadline) {
    OpenedHive opened;
    opened.path = file;
    Recovery recovery;
    bool readable = true;
    // One that was finished, but not put in its place before the program ended, is the best that there is.
    const FoundRows finished = ReadPages(Unfinished(file));
    auto image = finished.Image();
    if (finished.whole && image->IsWhole()) {
        recovery = Recover(finished, nullptr);
    } else {
        const FoundRows found = ReadPages(file);
        readable = found.readable;
        // A disk that gives nothing may give it later; one that lacks some pages has lost them.
        if (!readable && found.values.empty()) {
            opened.result = {KeepFailure::BadDisk, "the disk does not give what is on it: " + detail};
            return opened;
        }
        recovery = Recover(found, NewestState(file).get());
    }
    recovery.report.event = event;
    recovery.report.detail = detail;
    const bool isOfNothing = recovery.report.fromFile.empty() && recovery.report.fromState.empty();
    opened = Replace(file, *recovery.image, recovery.report, deadline);
    // What lacks something that could still be read must not be taken for all there is.
    if (!opened.image && readable) opened.image = std::move(recovery.image);
    // Killed while it made the first one.
    if (event == RecoveryReport::Missing && isOfNothing) opened.report.reset();
    return opened;
}

OpenedHive MakeHive(const fs::path& file, HiveDeadline deadline) {
    if (IsThere(Unfinished(file)) || NewestState(file))
        return RecoverHive(file, RecoveryReport::Missing, "no file", deadline);
    HiveImage empty;
    OpenedHive opened = Replace(file, empty, {}, deadline);
    opened.report.reset();
    return opened;
}

OpenedHive OpenLocked(const fs::path& file, HiveDeadline deadline) {
    if (IsEmptyOrMissing(file)) return MakeHive(file, deadline);
    MakePrivateFile(file);
    const SealedFile sealed = LookAtSeal(file);
    OpenedHive opened = OpenDoubtfulFile(file, deadline);
    const bool isDoubtful = opened.result.Kept() || opened.result.failure == KeepFailure::TooNew;
    if (isDoubtful && sealed.IsBroken(opened.image ? *opened.image : *ReadPages(file).Image())) {
        if (opened.file) opened.file->LeaveAsItIs();
        opened.file.reset();
        opened.result = {KeepFailure::Damaged, "a byte changed"};
    }
    if (opened.result.failure == KeepFailure::Damaged)
        return RecoverHive(file, RecoveryReport::Damaged, opened.result.detail, deadline);
    if (opened.file) {
        RemoveSeal(file);
        // A program that was killed may have left it; it would be taken for newer than what comes now.
        unlink(Unfinished(file).c_str());
    }
    return opened;
}

}  // namespace

OpenedHive OpenHive(const fs::path& path, HiveDeadline deadline) {
    OpenedHive opened;
    if (path.empty()) {
        opened.result = {KeepFailure::Failed, "the user has no folder"};
        return opened;
    }
    opened.path = path;
    opened.result = MakePrivateFolder(path.parent_path());
    if (!opened.result.Kept()) {
        opened.image = ReadWithoutWriting(path);
        return opened;
    }
    opened.result = FindFile(path, opened.path);
    if (!opened.result.Kept()) return opened;
    const HiveLock lock(opened.path, deadline);
    if (lock.Result().Kept())
        opened = OpenLocked(opened.path, deadline);
    else
        opened.result = lock.Result();
    if (!opened.image) opened.image = ReadWithoutWriting(opened.path);
    return opened;
}

OpenedHive RewriteHive(const fs::path& path, HiveImage& image, RecoveryReport::Event event,
                       const std::string& detail, HiveDeadline deadline) {
    OpenedHive opened;
    opened.result = MakePrivateFolder(path.parent_path());
    if (opened.result.Kept()) opened.result = FindFile(path, opened.path);
    if (!opened.result.Kept()) return opened;
    const HiveLock lock(opened.path, deadline);
    opened.result = lock.Result();
    if (opened.result.Kept()) {
        RecoveryReport report;
        report.event = event;
        report.detail = detail;
        opened = Replace(opened.path, image, report, deadline);
    }
    return opened;
}
