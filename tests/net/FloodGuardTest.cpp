#include <gtest/gtest.h>

#include "net/FloodGuard.h"

namespace {

using namespace std::chrono_literals;
using Answer = FloodGuard::Answer;

// Offers notes to a guard and counts what it takes.
class Computers {
  public:
    // How many of so many notes are taken that come in equal distances from `begin` on.
    int Send(const std::string& address, int count, std::chrono::milliseconds begin,
             std::chrono::milliseconds distance = 1ms) {
        int taken = 0;
        for (int i = 0; i < count; ++i) {
            const FloodGuard::Time now = FloodGuard::Time() + begin + i * distance;
            if (!guard.Admits(address, now, untouched)) continue;
            guard.Taken(address, now, ++lastKey_);
            untouched.notes += countUntouched ? 1 : 0;
            ++taken;
        }
        return taken;
    }

    FloodGuard guard;
    FloodGuard::Untouched untouched;
    bool countUntouched = false;

  private:
    std::int32_t lastKey_ = 0;
};

TEST(FloodGuard, ThreeHundredAMinuteOfEachAddressAreWelcome) {
    Computers computers;
    EXPECT_EQ(computers.Send("a", 300, 0s), 300);
    EXPECT_EQ(computers.Send("b", 300, 0s), 300);
    // For an hour, five a second and no more within any minute.
    EXPECT_EQ(computers.Send("c", 18'000, 0s, 200ms), 18'000);
    EXPECT_FALSE(computers.guard.Ask());
    // The first of c's minute is as old as a minute; no more than one is.
    EXPECT_EQ(computers.Send("c", 2, 3'600'000ms), 1);
}

TEST(FloodGuard, MoreAreRefusedUntilTheUserHasAnswered) {
    for (const auto& [answer, later] :
         {std::pair(Answer::GoOn, 1000), {Answer::Refuse, 0}, {Answer::Deleted, 0}}) {
        Computers computers;
        computers.Send("a", 1, 0s);
        computers.Send("b", 7, 30s);
        EXPECT_EQ(computers.Send("a", 400, 60s), 300);
        const auto flood = computers.guard.Ask();
        ASSERT_TRUE(flood);
        EXPECT_EQ(flood->address, "a");
        EXPECT_EQ(flood->keys.size(), 300u);
        EXPECT_EQ(flood->keys.front(), 9) << "of that minute and address only";
        EXPECT_FALSE(computers.guard.Ask()) << "asked once";
        EXPECT_EQ(computers.Send("a", 10, 24h), 0);
        EXPECT_EQ(computers.Send("b", 10, 24h), 10);
        computers.guard.Answered(answer);
        EXPECT_EQ(computers.Send("a", 1000, 24h + 1s), later);
        EXPECT_EQ(computers.Send("a", 1000, 48h), later);
        EXPECT_FALSE(computers.guard.Ask()) << "and never again";
    }
}

TEST(FloodGuard, SoAreNotesThatNobodyTouches) {
    const struct {
        Answer answer;
        int more, afterwards;
        bool asked;
    } rows[] = {
        {Answer::GoOn, 1000, 1500, true},
        {Answer::Refuse, 0, 1000, false},
        {Answer::Deleted, 0, 1000, true},
    };
    for (const auto& row : rows) {
        Computers computers;
        computers.countUntouched = true;
        for (int i = 0; i < 10; ++i) EXPECT_EQ(computers.Send(std::to_string(i), 100, i * 2min), 100);
        EXPECT_EQ(computers.Send("x", 1, 1h), 0);
        EXPECT_EQ(computers.Send("y", 1, 1h), 0);
        const auto flood = computers.guard.Ask();
        ASSERT_TRUE(flood);
        EXPECT_EQ(flood->address, "");
        --computers.untouched.notes;
        EXPECT_EQ(computers.Send("x", 2, 2h), 1) << "there is room again";
        computers.guard.Answered(row.answer);
        EXPECT_EQ(computers.Send("x", 1200, 3h, 1s), row.more);
        computers.untouched.notes = 0;
        EXPECT_EQ(computers.Send("x", 1500, 4h, 1s), row.afterwards);
        EXPECT_EQ(computers.Send("x", 1500, 5h, 1s), row.answer == Answer::GoOn ? 500 : 0);
        EXPECT_EQ(computers.guard.Ask().has_value(), row.asked);
    }
}

TEST(FloodGuard, SeveralFloodsAreAskedAboutOneAfterTheOther) {
    Computers computers;
    for (const char* address : {"a", "b"}) EXPECT_EQ(computers.Send(address, 400, 0s), 300);
    EXPECT_EQ(computers.guard.Ask()->address, "a");
    computers.guard.Answered(Answer::GoOn);
    EXPECT_EQ(computers.guard.Ask()->address, "b");
    EXPECT_EQ(computers.Send("b", 1, 1s), 0);
    computers.guard.Answered(Answer::GoOn);
    EXPECT_FALSE(computers.guard.Ask());
    EXPECT_EQ(computers.Send("b", 1, 1s), 1);
}

}  // namespace
