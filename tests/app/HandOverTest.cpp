#include <algorithm>

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
    ExpectTaken(Sender(names), names.size());
    names.back() = AbsoluteFileName(names.back());
    EXPECT_EQ(names_, names);
}

TEST_F(HandOverTest, DeliversWhatArrivedBeforeListening) {
    std::future<bool> sender = Sender({L"/early"});
    EXPECT_EQ(sender.wait_for(100ms), std::future_status::timeout);
    Listen();
    ExpectTaken(std::move(sender));
}

TEST_F(HandOverTest, TakesManySendersAtOnce) {
    Listen();
    std::vector<std::future<bool>> senders;
    for (int i = 0; i < 20; ++i) senders.push_back(Sender({L"/many"}));
    EXPECT_TRUE(RunUntil(
        [&] { return std::ranges::all_of(senders, Ended<bool>) && names_.size() >= senders.size(); }));
    for (std::future<bool>& sender : senders) EXPECT_TRUE(sender.get());
    EXPECT_EQ(names_.size(), senders.size());
}

TEST_F(HandOverTest, DeliversTakenNamesBeforeItFinishes) {
    Listen();
    const std::future<bool> sender = Sender({L"/last"});
    // The answer comes before the delivery, so this may stop between them.
    EXPECT_TRUE(RunUntil([&] { return Ended(sender) || !names_.empty(); }));
    role_->Finish();
    EXPECT_EQ(names_.size(), 1u);
    std::future<bool> late = Sender({L"/too late"});
    EXPECT_EQ(late.wait_for(100ms), std::future_status::timeout);
    role_.reset();
    EXPECT_TRUE(RunUntil([&] { return Ended(late); }));
    EXPECT_FALSE(late.get());
}

TEST_F(HandOverTest, ACommandIsAnswered) {
    const Command command{L"--beispiel", {L"", L"ä €", L"C:\\a b"}};
    const CommandAnswer expected{3, L"€ä\n" + std::wstring(400'000, L'x')};
    role_->Listen([&](const Command& received) {
        EXPECT_EQ(received, command);
        return expected;
    });
    auto asker = std::async(std::launch::async, [&] { return HandOver(command); });
    EXPECT_TRUE(RunUntil([&] { return Ended(asker); }));
    const HandedOver handed = asker.get();
    EXPECT_EQ(handed.outcome, HandedOver::Answered);
    EXPECT_EQ(handed.answer.exitCode, expected.exitCode);
    EXPECT_TRUE(handed.answer.text == expected.text) << handed.answer.text.size();
}

TEST_F(HandOverTest, NobodyThereIsToldAtOnce) {
    EXPECT_FALSE(RunningCopy::Claim()) << "one copy has the role";
    role_.reset();
    EXPECT_FALSE(HandOver(L"/a"));
    EXPECT_EQ(HandOver(Command{L"--beispiel"}).outcome, HandedOver::NobodyThere);
}

TEST_F(HandOverTest, AHungCopyIsGivenUpAndTakesNothingLater) {
    Listen();
    auto command = std::async(std::launch::async, [] { return HandOver(Command{L"--beispiel"}); });
    EXPECT_FALSE(Sender({L"/withdrawn"}).get());
    EXPECT_EQ(command.get().outcome, HandedOver::Silent);
    ExpectTaken(Sender({L"/taken"}));
    ASSERT_EQ(names_.size(), 1u);
    EXPECT_EQ(FilePath(names_[0]).filename(), "taken");
}

}  // namespace
