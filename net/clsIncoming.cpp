#include "net/clsIncoming.h"

namespace {

// How long one arrival may keep other events waiting.
constexpr auto kTurn = std::chrono::milliseconds(3);

}  // namespace

void clsIncoming::ConnectionEstablished() { Socket.SendData(Receiver::GreetingLine()); }

void clsIncoming::Socket_DataArrival(std::int32_t) {
    receiver_.Append(Socket.GetData());
    bool complete = false;
    const bool all = CarryOutLines(complete);
    heard_(HeldBytes(), complete);
    if (!IsConnected()) return;
    if (!all)
        Socket.AskAgain();
    else if (leaving_ && !Socket.SendPending())
        End();
}

bool clsIncoming::CarryOutLines(bool& complete) {
    const auto end = std::chrono::steady_clock::now() + kTurn;
    while (const auto step = receiver_.Next()) {
        complete = true;
        CarryOut(*step);
        if (step->note || std::chrono::steady_clock::now() >= end) return !receiver_.HasLine();
    }
    return true;
}

void clsIncoming::CarryOut(const Receiver::Step& step) {
    std::string reply = step.reply;
    if (step.note) {
        if (const auto refusal = takeIn_(*step.note))
            reply = receiver_.Fail(refusal->number, refusal->description);
    }
    if (!reply.empty()) Socket.SendData(reply);
    if (step.quit && !leaving_) {
        leaving_ = true;
        // Only the socket: to take the session out of the pool would destroy the timer that is calling. It
        // leaves the pool with the next session that begins or ends.
        leavingLimit_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Socket.Close(); });
        leavingLimit_.StartOnce(static_cast<int>(Patience().count()));
    }
}

void clsIncoming::Socket_SendComplete() {
    if (leaving_ && !receiver_.HasLine()) End();
}
