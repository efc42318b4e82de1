#include <gtest/gtest.h>

#include "net/ConnectionLimits.h"

namespace {

using namespace std::chrono_literals;
using Number = ConnectionLimits::Number;

const ConnectionLimits::Time kStart{};

std::string Address(std::size_t i) { return "10.0.0." + std::to_string(i); }

// Connections of different addresses, one a second from the start on; the first is number 1.
ConnectionLimits Crowd(std::size_t count, std::size_t ofEachAddress) {
    ConnectionLimits limits;
    for (std::size_t i = 0; i < count; ++i)
        limits.Add(Address(i / ofEachAddress), kStart + std::chrono::seconds(i));
    return limits;
}

TEST(ConnectionLimits, WhoHasBeenSilentGivesWayWhenRoomIsNeeded) {
    const struct {
        const char* what;
        ConnectionLimits limits;
        std::string address;
        std::chrono::seconds at;
        bool there;
        std::optional<Number> instead;
    } rows[] = {
        {"nobody is there", {}, "a", 0s, true, {}},
        {"room for one more of an address", Crowd(15, 16), Address(0), 1h, true, {}},
        {"none for one more of an address", Crowd(16, 16), Address(0), 59s, false, {}},
        {"the silent one of the address", Crowd(16, 16), Address(0), 60s, true, 1u},
        {"of the address, not a longer silent one", Crowd(32, 16), Address(1), 1h, true, 17u},
        {"another address has room", Crowd(16, 16), "a", 0s, true, {}},
        {"room for one more", Crowd(255, 1), "a", 1h, true, {}},
        {"none for one more", Crowd(256, 16), "a", 59s, false, {}},
        {"the longest silent one of all", Crowd(256, 16), "a", 1h, true, 1u},
    };
    for (const auto& row : rows) {
        const ConnectionLimits::Room room = row.limits.RoomFor(row.address, kStart + row.at);
        EXPECT_EQ(room.there, row.there) << row.what;
        EXPECT_EQ(room.instead, row.instead) << row.what;
    }
}

TEST(ConnectionLimits, WhoSpeaksStays) {
    ConnectionLimits limits = Crowd(16, 16);
    for (Number number = 1; number <= 16; ++number) limits.Spoke(number, kStart + 100s + number * 1s);
    limits.Spoke(1, kStart + 130s);
    EXPECT_FALSE(limits.RoomFor(Address(0), kStart + 161s).there);
    EXPECT_EQ(limits.RoomFor(Address(0), kStart + 162s).instead, 2u);
    limits.Remove(7);
    const ConnectionLimits::Room room = limits.RoomFor(Address(0), kStart + 162s);
    EXPECT_TRUE(room.there && !room.instead);
}

TEST(ConnectionLimits, TogetherTheyHoldNoMoreThanTheLimit) {
    ConnectionLimits limits = Crowd(4, 1);
    EXPECT_FALSE(limits.HoldTooMuch());
    limits.Holds(1, kMostHeldBytes / 4);
    limits.Holds(2, kMostHeldBytes / 2);
    limits.Holds(3, kMostHeldBytes / 4);
    EXPECT_FALSE(limits.HoldTooMuch());
    limits.Holds(4, 1);
    EXPECT_TRUE(limits.HoldTooMuch());
    EXPECT_EQ(limits.Largest(), 2u);
    limits.Holds(4, 0);
    EXPECT_FALSE(limits.HoldTooMuch());
    limits.Holds(4, kMostHeldBytes);
    limits.Remove(2);
    EXPECT_TRUE(limits.HoldTooMuch());
    limits.Remove(4);
    EXPECT_FALSE(limits.HoldTooMuch());
}

}  // namespace
