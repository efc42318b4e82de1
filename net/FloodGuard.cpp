#include "net/FloodGuard.h"

namespace {

constexpr std::chrono::minutes kMinute{1};

}  // namespace

bool FloodGuard::Admits(const std::string& address, Time now, const Untouched& untouched) {
    ForgetOld(now);
    if (const auto found = senders_.find(address); found != senders_.end()) {
        Sender& sender = found->second;
        if (sender.state == State::Pending || sender.state == State::Refused) return false;
        if (sender.state == State::Watched && sender.lastMinute.size() >= kMostNotesAMinute) {
            sender.state = State::Pending;
            Flood& flood = floods_.emplace_back(Flood{address, {}});
            for (const auto& [time, key] : sender.lastMinute) flood.keys.push_back(key);
            return false;
        }
    }
    if (untouched.notes < timesMore_ * kMostUntouchedNotes &&
        untouched.characters < timesMore_ * kMostUntouchedCharacters)
        return true;
    if (all_ == State::Watched) {
        all_ = State::Pending;
        floods_.push_back({});
    }
    return false;
}

void FloodGuard::Taken(const std::string& address, Time now, std::int32_t key) {
    Sender& sender = senders_[address];
    if (sender.state == State::Watched) sender.lastMinute.emplace_back(now, key);
}

std::optional<FloodGuard::Flood> FloodGuard::Ask() {
    if (asking_ || floods_.empty()) return std::nullopt;
    asking_ = true;
    return floods_.front();
}

void FloodGuard::Answered(Answer answer) {
    if (!asking_) return;
    asking_ = false;
    const std::string address = floods_.front().address;
    floods_.pop_front();
    if (!address.empty()) {
        senders_[address] = {answer == Answer::GoOn ? State::Trusted : State::Refused, {}};
        return;
    }
    all_ = answer == Answer::Refuse ? State::Refused : State::Watched;
    if (answer == Answer::GoOn) ++timesMore_;
}

// A sender without a note in the last minute is like one who never sent any.
void FloodGuard::ForgetOld(Time now) {
    for (auto& [address, sender] : senders_) {
        while (!sender.lastMinute.empty() && now - sender.lastMinute.front().first >= kMinute)
            sender.lastMinute.pop_front();
    }
    std::erase_if(senders_, [](const auto& each) {
        return each.second.state == State::Watched && each.second.lastMinute.empty();
    });
}
