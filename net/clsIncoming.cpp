#include "net/clsIncoming.h"

#include <chrono>
#include <exception>

#include "base/basText.h"

namespace {

constexpr int kInternalError = 51;

// How long one arrival may keep other events waiting.
constexpr auto kTurn = std::chrono::milliseconds(3);

}  // namespace

void clsIncoming::ConnectionEstablished() { Socket->SendData(Receiver::GreetingLine()); }

void clsIncoming::Socket_DataArrival(std::int32_t) {
    receiver_.Append(Socket->GetData());
    const auto end = std::chrono::steady_clock::now() + kTurn;
    while (const auto step = receiver_.Next()) {
        CarryOut(*step);
        if (step->note || std::chrono::steady_clock::now() >= end) {
            if (!receiver_.HasLine()) break;
            Socket->AskAgain();
            return;
        }
    }
    if (leaving_ && !Socket->SendPending()) Leave();
}

void clsIncoming::CarryOut(const Receiver::Step& step) {
    std::string reply = step.reply;
    if (step.note) {
        try {
            takeIn_(*step.note);
        } catch (const std::exception& failure) {
            reply = receiver_.Fail(kInternalError, FromUtf8(failure.what()));
        }
    }
    if (!reply.empty()) Socket->SendData(reply);
    if (step.quit && !leaving_) {
        leaving_ = true;
        leavingLimit_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Leave(); });
        leavingLimit_.StartOnce(static_cast<int>(Patience().count()));
    }
}

void clsIncoming::Socket_SendComplete() {
    if (leaving_ && !receiver_.HasLine()) Leave();
}

void clsIncoming::Leave() {
    receiver_.DropNote();
    UnloadSocket();
}
