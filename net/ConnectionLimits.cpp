#include "net/ConnectionLimits.h"

#include <algorithm>

ConnectionLimits::Room ConnectionLimits::RoomFor(const std::string& address, Time now) const {
    const auto ofAddress = static_cast<std::size_t>(
        std::count_if(connections_.begin(), connections_.end(),
                      [&](const auto& each) { return each.second.address == address; }));
    const bool addressFull = ofAddress >= kMostOfOneAddress;
    if (!addressFull && connections_.size() < kMostConnections) return {true, std::nullopt};
    std::optional<Number> silent;
    Time longest = now - silence_;
    for (const auto& [number, connection] : connections_) {
        if (addressFull && connection.address != address) continue;
        if (connection.spoke > longest) continue;
        longest = connection.spoke;
        silent = number;
    }
    return {silent.has_value(), silent};
}

ConnectionLimits::Number ConnectionLimits::Add(const std::string& address, Time now) {
    connections_[++last_] = {address, now};
    return last_;
}

void ConnectionLimits::Remove(Number number) {
    const auto found = connections_.find(number);
    if (found == connections_.end()) return;
    held_ -= found->second.held;
    connections_.erase(found);
}

void ConnectionLimits::Spoke(Number number, Time now) {
    const auto found = connections_.find(number);
    if (found != connections_.end()) found->second.spoke = now;
}

void ConnectionLimits::Holds(Number number, std::size_t bytes) {
    const auto found = connections_.find(number);
    if (found == connections_.end()) return;
    held_ += bytes - found->second.held;
    found->second.held = bytes;
}

std::optional<ConnectionLimits::Number> ConnectionLimits::Largest() const {
    const auto largest = std::max_element(
        connections_.begin(), connections_.end(),
        [](const auto& one, const auto& other) { return one.second.held < other.second.held; });
    if (largest == connections_.end()) return std::nullopt;
    return largest->first;
}
