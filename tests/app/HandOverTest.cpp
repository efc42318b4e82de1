// Hand-over between real processes.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "app/HandOver.h"
#include "base/FileName.h"
#include "tests/app/OtherCopy.h"
#include "tests/support/Events.h"

namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr auto kLimit = 10s;

Clock::duration TimeOf(const std::function<void()>& work) {
    const Clock::time_point start = Clock::now();
    work();
    return Clock::now() - start;
}

class HandOverTest : public testing::Test {
  protected:
    void Listen() {
        role_->Listen([this](const std::wstring& name) { names_.push_back(name); });
    }

    std::unique_ptr<RunningCopy> role_ = RunningCopy::Claim();
    std::vector<std::wstring> names_;
};

TEST_F(HandOverTest, CarriesNamesExactlyAndInOrder) {
    ASSERT_TRUE(role_);
    Listen();
    const std::vector<std::wstring> names = NamesOfAllKinds();
    OtherCopy sender = OtherCopy::Sender(names);
    EXPECT_TRUE(RunUntil([&] { return sender.Ended() && names_.size() >= names.size(); }, kLimit));
    EXPECT_EQ(sender.Result(), 0);
    EXPECT_EQ(names_, names);
}

TEST_F(HandOverTest, MakesNamesAbsolute) {
    Listen();
    OtherCopy sender = OtherCopy::Sender({L"no such file.kvr"});
    EXPECT_TRUE(RunUntil([&] { return sender.Ended() && !names_.empty(); }, kLimit));
    ASSERT_EQ(names_.size(), 1u);
    EXPECT_EQ(FilePath(names_[0]), std::filesystem::current_path() / "no such file.kvr");
}

TEST_F(HandOverTest, DeliversWhatArrivedBeforeListening) {
    OtherCopy sender = OtherCopy::Sender({L"/early"});
    std::this_thread::sleep_for(100ms);
    EXPECT_FALSE(sender.Ended());
    Listen();
    EXPECT_TRUE(RunUntil([&] { return sender.Ended() && !names_.empty(); }, kLimit));
    EXPECT_EQ(sender.Result(), 0);
}

TEST_F(HandOverTest, TakesManySendersAtOnce) {
    Listen();
    std::vector<OtherCopy> senders;
    for (int i = 0; i < ManyCopies(); ++i) senders.push_back(OtherCopy::Sender({L"/many"}));
    EXPECT_TRUE(RunUntil(
        [&] {
            bool all = true;
            for (OtherCopy& sender : senders) all = sender.Ended() && all;
            return all && names_.size() >= senders.size();
        },
        kLimit));
    for (OtherCopy& sender : senders) EXPECT_EQ(sender.Result(), 0);
    EXPECT_EQ(names_.size(), senders.size());
}

TEST_F(HandOverTest, DeliversTakenNamesBeforeItFinishes) {
    Listen();
    OtherCopy sender = OtherCopy::Sender({L"/last"});
    // The answer comes before the delivery, so this may stop between them.
    EXPECT_TRUE(RunUntil([&] { return sender.Ended() || !names_.empty(); }, kLimit));
    role_->Finish();
    EXPECT_EQ(names_.size(), 1u);
    OtherCopy late = OtherCopy::Sender({L"/too late"});
    std::this_thread::sleep_for(100ms);
    role_.reset();
    EXPECT_TRUE(RunUntil([&] { return late.Ended(); }, kLimit));
    EXPECT_EQ(late.Result(), 1);
}

TEST_F(HandOverTest, OneCopyHasTheRole) {
    EXPECT_FALSE(RunningCopy::Claim());
    role_.reset();
    EXPECT_TRUE(RunningCopy::Claim());
}

TEST_F(HandOverTest, NobodyThereIsToldAtOnce) {
    role_.reset();
    EXPECT_LT(TimeOf([] { EXPECT_FALSE(HandOver(L"/a")); }), 500ms);
}

TEST_F(HandOverTest, KilledCopyIsReplaced) {
    role_.reset();
    OtherCopy first = OtherCopy::Holder();
    EXPECT_FALSE(RunningCopy::Claim());
    first.Kill();
    EXPECT_LT(TimeOf([] { EXPECT_FALSE(HandOver(L"/a")); }), 500ms);
    role_ = RunningCopy::Claim();
    ASSERT_TRUE(role_);
    Listen();
    OtherCopy sender = OtherCopy::Sender({L"/a"});
    EXPECT_TRUE(RunUntil([&] { return sender.Ended() && !names_.empty(); }, kLimit));
    EXPECT_EQ(sender.Result(), 0);
}

TEST_F(HandOverTest, StoppedCopyIsGivenUpAfterFiveSeconds) {
    role_.reset();
    OtherCopy first = OtherCopy::Holder();
    first.Stop();
    const Clock::duration time = TimeOf([] { EXPECT_FALSE(HandOver(L"/a")); });
    EXPECT_GE(time, 4900ms);
    EXPECT_LT(time, 5500ms);
}

}  // namespace
