#pragma once
// The hive behind the registry calls where the system has none of its own: the image that this process sees,
// the file below it, and the transactions that lead from one to the other.
//
// A hive that could not be opened or read looks empty and refuses every change until the process ends, so
// that nothing empty is ever written over what could not be read.

#include <memory>

#include "registry/HiveFile.h"
#include "registry/HiveImage.h"

class RegistryHive {
  public:
    // The image as the file is now; inside a transaction, as the transaction has made it.
    HiveImage& FreshImage();

    // The image as it was last asked for. A fresh one may be another object.
    HiveImage& Image() { return *image_; }

    // Nestable. Writing is allowed only between the two, and only if MayWrite.
    void Begin();
    bool MayWrite() const { return depth_ > 0 && writing_.Kept(); }
    // `ending` says whether it is to be kept. The result says why nothing of the outermost transaction is
    // kept; of an inner one, why it could not write.
    KeepResult End(const KeepResult& ending);

    // Gives the file up; the next call opens the one that the environment names then.
    void Close();

  private:
    void Refresh();
    void Take(std::unique_ptr<HiveImage> image);

    enum { kUnopened, kUsable, kUnreadable } state_ = kUnopened;
    std::unique_ptr<HiveFile> file_;
    std::unique_ptr<HiveImage> image_ = std::make_unique<HiveImage>();
    int depth_ = 0;
    KeepResult usable_;     // why the file could not be opened or read
    KeepResult writing_;    // why the transaction may not write
    KeepResult abandoned_;  // why something in the transaction ended without being kept
    bool stale_ = false;    // the image holds what never reached the file
};

// The hive of this process, registry.sqlite in the user's data folder.
RegistryHive& Hive();
