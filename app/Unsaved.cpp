#include "app/Unsaved.h"

#include <algorithm>

#include "dialogs/Message.h"
#include "dialogs/Wait.h"
#include "model/KeepReason.h"

namespace {
constexpr std::chrono::milliseconds kFirstPause = std::chrono::seconds(1);
constexpr std::chrono::milliseconds kLongestPause = std::chrono::seconds(30);
}  // namespace

void Unsaved::Heard(const KeepResult& result) {
    result_ = result;
    if (result.Kept()) {
        timer_.Stop();
        pause_ = {};
        told_ = false;
        return;
    }
    TryAgainLater();
    if (told_) return;
    told_ = true;
    // Not within the gesture or the dialog that has just saved; by the timer, so that it goes with this
    // object.
    timer_.CallAfter([this] { Tell(); });
}

void Unsaved::TryAgainLater() {
    if (timer_.IsRunning()) return;
    pause_ = std::clamp(pause_ * 2, kFirstPause, kLongestPause);
    timer_.StartOnce(static_cast<int>(pause_.count()));
}

void Unsaved::Repeat() {
    if (!IsQuitting()) repeat_();
}

void Unsaved::Tell() {
    if (!Any() || IsQuitting()) return;
    TellMessage(
        L"Ihre letzten Änderungen konnten nicht gespeichert werden.\r\n\r\n"
        L"Kivora versucht es von selbst weiter. Bis es gelingt, trägt das Symbol von Kivora ein "
        L"Warnzeichen.\r\n\r\n" +
            ReasonText(result_),
        kCritical, L"Nicht gespeichert");
}
