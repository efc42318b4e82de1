#include <windows.h>

#include <algorithm>

#include "base/DoneSignal.h"

struct DoneSignal::Native {
    const HANDLE event = CreateEventW(nullptr, TRUE, FALSE, nullptr);
};

DoneSignal::DoneSignal() : native_(std::make_unique<Native>()) {}
DoneSignal::~DoneSignal() { CloseHandle(native_->event); }

void DoneSignal::Give() { SetEvent(native_->event); }

bool DoneSignal::WaitFor(std::chrono::milliseconds most) {
    const auto milliseconds = static_cast<DWORD>(std::clamp<long long>(most.count(), 0, INFINITE - 1LL));
    return WaitForSingleObject(native_->event, milliseconds) == WAIT_OBJECT_0;
}
