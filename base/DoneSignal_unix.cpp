#include <condition_variable>
#include <mutex>

#include "base/DoneSignal.h"

struct DoneSignal::Native {
    std::mutex lock;
    std::condition_variable changed;
    bool given = false;
};

DoneSignal::DoneSignal() : native_(std::make_unique<Native>()) {}
DoneSignal::~DoneSignal() = default;

void DoneSignal::Give() {
    const std::lock_guard lock(native_->lock);
    native_->given = true;
    native_->changed.notify_all();
}

bool DoneSignal::WaitFor(std::chrono::milliseconds most) {
    std::unique_lock lock(native_->lock);
    return native_->changed.wait_for(lock, most, [this] { return native_->given; });
}
