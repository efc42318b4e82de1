#pragma once
// How many connections other computers may have to this one, and how much memory they may take together. It
// counts and decides; whoever owns the connections closes those that it names. No socket, no clock: the time
// is passed in.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

// More than any office has; fewer than a process may have handles. Connections that this computer makes
// itself do not count.
constexpr std::size_t kMostConnections = 256;
constexpr std::size_t kMostOfOneAddress = 16;

// A connection on which nothing complete was said for so long gives way to another one.
constexpr int kSilenceSeconds = 60;

// What all connections hold together: lines that are still incomplete, notes under construction, answers that
// were not taken.
constexpr std::size_t kMostHeldBytes = std::size_t{8} << 20;

class ConnectionLimits {
  public:
    using Time = std::chrono::steady_clock::time_point;
    using Number = std::uint64_t;  // names a connection; never comes again

    // silence: after which a connection gives way.
    explicit ConnectionLimits(std::chrono::seconds silence) : silence_(silence) {}
    ConnectionLimits() = default;

    // Whether a computer of that address may connect now, and the connection that has to be closed for it, if
    // any: the longest silent one, of this address if that has as many as it may have.
    struct Room {
        bool there = false;
        std::optional<Number> instead;
    };
    Room RoomFor(const std::string& address, Time now) const;

    Number Add(const std::string& address, Time now);
    void Remove(Number number);

    // Something complete was said on it.
    void Spoke(Number number, Time now);

    // It holds so many bytes now.
    void Holds(Number number, std::size_t bytes);

    // All of them together hold too much.
    bool HoldTooMuch() const { return held_ > kMostHeldBytes; }
    // The one that holds most, and has to be closed then.
    std::optional<Number> Largest() const;

  private:
    struct Connection {
        std::string address;
        Time spoke;
        std::size_t held = 0;
    };

    std::chrono::seconds silence_{kSilenceSeconds};
    std::map<Number, Connection> connections_;
    Number last_ = 0;
    std::size_t held_ = 0;
};
