#include "app/Receiving.h"

#include "net/basNetworkAccess.h"

Receiving::Receiving(NetworkAccess& network, std::function<void()> onChange, std::chrono::milliseconds pause)
    : network_(network), onChange_(std::move(onChange)), pause_(pause) {
    again_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Listen(); });
    network_.MayConnect = [this](const std::string& address, const KnownComputers::Answer& answer) {
        MayConnect(address, answer);
    };
}

void Receiving::From(ReceiveFrom from) {
    state_.from = from;
    network_.ListensAtAll(from != ReceiveFrom::None);
    Listen();
    network_.AskAgain();
}

void Receiving::BookChanged() {
    if (state_.from == ReceiveFrom::Known) network_.AskAgain();
}

void Receiving::Listen() {
    const bool listening = network_.Listen();
    state_.portTaken = !listening && state_.from != ReceiveFrom::None;
    if (state_.portTaken)
        again_.StartOnce(static_cast<int>(pause_.count()));
    else
        again_.Stop();
    onChange_();
}

void Receiving::MayConnect(const std::string& address, const KnownComputers::Answer& answer) {
    if (state_.from != ReceiveFrom::Known) return answer(state_.from == ReceiveFrom::All);
    known_.Ask(address, answer);
}
