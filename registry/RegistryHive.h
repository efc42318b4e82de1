#pragma once
// The hive behind the registry's calls where the operating system has no registry: the image that this
// process sees, the file below it, and the transactions that lead from one to the other.
//
// What cannot be opened or written for now is tried again at the next transaction. What was never read is not
// written to before it has been: nothing empty is ever written over what could not be read.

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "registry/HealthReport.h"
#include "registry/HiveFile.h"
#include "registry/HiveImage.h"
#include "registry/HiveOpening.h"
#include "registry/KeepResult.h"

class RegistryHive {
  public:
    ~RegistryHive() { Close(); }

    // The image as the file is now; inside a transaction, as the transaction has made it.
    HiveImage& FreshImage();

    // The image as it was last asked for. A fresh one may be another object.
    HiveImage& Image() { return *image_; }

    // Nestable. Writing is allowed only between the two, and only if MayWrite. Waits for other programs for a
    // tenth of a second at most.
    void Begin();
    bool MayWrite() const { return depth_ > 0 && writing_.Kept(); }
    // `ending` says whether it is to be kept. The result says why nothing of the outermost transaction is
    // kept; of an inner one, why it could not write.
    KeepResult End(const KeepResult& ending);

    // As in RegistryHealth.h.
    RegistryHealth Health();
    KeepResult ReadAgain();
    std::optional<RecoveryReport> TakeReport() { return std::exchange(report_, std::nullopt); }
    void WhenStateIsDue(std::function<void(std::chrono::milliseconds)> due);
    KeepResult KeepState();

    // Gives the file up; the next call opens the one that the environment names then.
    void Close();

  private:
    KeepResult Prepare();
    KeepResult BeginInFile(HiveDeadline deadline);
    KeepResult Refresh(HiveDeadline deadline);
    void Open(HiveDeadline deadline);
    void Take(OpenedHive opened);
    KeepResult CommitAgain(const KeepResult& before);
    KeepResult Rewrite();
    void StateIsDue(std::chrono::milliseconds pause);
    KeepResult OfThisFile(KeepResult result) const;
    void RewriteNext(RecoveryReport::Event event, const std::string& detail);

    struct Rewriting {
        RecoveryReport::Event event;
        std::string detail;
    };

    bool opened_ = false;  // or it was tried
    bool unread_ = false;  // what is in the file is not known
    std::unique_ptr<HiveFile> file_;
    std::filesystem::path path_;
    std::unique_ptr<HiveImage> image_ = std::make_unique<HiveImage>();
    KeepResult failure_;                  // why there is no file, or why the last transaction was not kept
    std::optional<Rewriting> rewriting_;  // the next transaction makes the file anew from the image, and why
    int depth_ = 0;
    KeepResult writing_;    // why the transaction may not write
    KeepResult abandoned_;  // why something in the transaction ended without being kept
    bool stale_ = false;    // the image holds what never reached the file
    std::optional<RecoveryReport> report_;
    bool stateDue_ = false;  // something is new since the last state
    std::function<void(std::chrono::milliseconds)> whenStateIsDue_;
};

// The hive of this process, registry.sqlite in the user's data folder.
RegistryHive& Hive();
