// Hand-over between real processes.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "base/FileName.h"
#include "tests/app/OtherCopy.h"

namespace {

using namespace std::chrono_literals;

using HandOverTest = HandOverFixture;

TEST_F(HandOverTest, CarriesNamesExactlyAndInOrder) {
    ASSERT_TRUE(role_);
    Listen();
    std::vector<std::wstring> names = NamesOfAllKinds();
    names.push_back(L"no such file.kvr");
    OtherCopy sender = OtherCopy::Sender(names);
    names.back() = AbsoluteFileName(names.back());
    ExpectTaken(sender, names.size());
    EXPECT_EQ(names_, names);
}

TEST_F(HandOverTest, DeliversWhatArrivedBeforeListening) {
    OtherCopy sender = OtherCopy::Sender({L"/early"});
    std::this_thread::sleep_for(100ms);
    EXPECT_FALSE(sender.Ended());
    Listen();
    ExpectTaken(sender);
}

TEST_F(HandOverTest, TakesManySendersAtOnce) {
    Listen();
    std::vector<OtherCopy> senders;
    for (int i = 0; i < ManyCopies(); ++i) senders.push_back(OtherCopy::Sender({L"/many"}));
    EXPECT_TRUE(RunUntil([&] {
        bool all = true;
        for (OtherCopy& sender : senders) all = sender.Ended() && all;
        return all && names_.size() >= senders.size();
    }));
    for (OtherCopy& sender : senders) EXPECT_EQ(sender.Result(), 0);
    EXPECT_EQ(names_.size(), senders.size());
}

TEST_F(HandOverTest, DeliversTakenNamesBeforeItFinishes) {
    Listen();
    OtherCopy sender = OtherCopy::Sender({L"/last"});
    // The answer comes before the delivery, so this may stop between them.
    EXPECT_TRUE(RunUntil([&] { return sender.Ended() || !names_.empty(); }));
    role_->Finish();
    EXPECT_EQ(names_.size(), 1u);
    OtherCopy late = OtherCopy::Sender({L"/too late"});
    std::this_thread::sleep_for(100ms);
    role_.reset();
    EXPECT_TRUE(RunUntil([&] { return late.Ended(); }));
    EXPECT_EQ(late.Result(), 1);
}

TEST_F(HandOverTest, ACommandIsAnswered) {
    const Command command{L"--beispiel", {L"", L"ä €", L"C:\\a b"}};
    const CommandAnswer expected{3, L"€ä\n" + std::wstring(400'000, L'x')};
    role_->Listen([&](const Command& received) {
        EXPECT_EQ(received, command);
        return expected;
    });
    std::atomic<bool> done = false;
    std::thread asker([&] {
        const HandedOver handed = HandOver(command);
        EXPECT_EQ(handed.outcome, HandedOver::Answered);
        EXPECT_EQ(handed.answer.exitCode, expected.exitCode);
        EXPECT_TRUE(handed.answer.text == expected.text) << handed.answer.text.size();
        done = true;
    });
    EXPECT_TRUE(RunUntil([&] { return done.load(); }));
    asker.join();
}

TEST_F(HandOverTest, NobodyThereIsToldAtOnce) {
    EXPECT_FALSE(RunningCopy::Claim()) << "one copy has the role";
    role_.reset();
    EXPECT_FALSE(HandOver(L"/a"));
    EXPECT_EQ(HandOver(Command{L"--beispiel"}).outcome, HandedOver::NobodyThere);
}

TEST_F(HandOverTest, KilledCopyIsReplaced) {
    role_.reset();
    OtherCopy first = OtherCopy::Holder();
    EXPECT_FALSE(RunningCopy::Claim());
    first.Kill();
    EXPECT_FALSE(HandOver(L"/a"));
    role_ = RunningCopy::Claim();
    ASSERT_TRUE(role_);
    Listen();
    OtherCopy sender = OtherCopy::Sender({L"/a"});
    ExpectTaken(sender);
}

TEST_F(HandOverTest, AHungCopyIsGivenUpAndTakesNothingLater) {
    Listen();
    std::thread([] { EXPECT_FALSE(HandOver(L"/withdrawn")); }).join();
    std::thread([] { EXPECT_EQ(HandOver(Command{L"--beispiel"}).outcome, HandedOver::Silent); }).join();
    OtherCopy sender = OtherCopy::Sender({L"/taken"});
    ExpectTaken(sender);
    ASSERT_EQ(names_.size(), 1u);
    EXPECT_EQ(FilePath(names_[0]).filename(), "taken");
}

}  // namespace
