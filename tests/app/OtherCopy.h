#pragma once
// What the tests of the hand-over share. The other copies are threads, which share with the running copy no
// more than processes do; those of the built program are in ProcessTest.

#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <string>
#include <vector>

#include "app/HandOver.h"
#include "tests/support/Events.h"

// Another copy that hands these names over one after the other, and says whether all were taken.
inline std::future<bool> Sender(std::vector<std::wstring> names) {
    return std::async(std::launch::async, [names = std::move(names)] {
        for (const std::wstring& name : names)
            if (!HandOver(name)) return false;
        return true;
    });
}

template <class Result>
bool Ended(const std::future<Result>& other) {
    return other.wait_for(std::chrono::seconds(0)) == std::future_status::ready;
}

// Absolute names of files with everything that names may have. On Windows those of a network and of the
// root of the file system on.
std::vector<std::wstring> NamesOfAllKinds();

// Takes on the role of the running copy, to which others hand something over.
class RunningCopyInTest : public RunningCopy {
  public:
    explicit RunningCopyInTest(Receive& receive) : receive_(receive) {}
    void Listen(Receive receive) override { receive_ = std::move(receive); }
    void Finish() override {}

  private:
    Receive& receive_;
};

// The running copy, and the names that it was handed.
class HandOverFixture : public testing::Test {
  protected:
    void Listen() {
        names_.clear();
        role_->Listen([this](const Command& command) {
            names_.push_back(command.arguments[0]);
            return CommandAnswer();
        });
    }
    // The other copy hears that so many names were taken, and they arrive.
    void ExpectTaken(std::future<bool> sender, std::size_t names = 1) {
        EXPECT_TRUE(RunUntil([&] { return Ended(sender) && names_.size() >= names; }));
        EXPECT_TRUE(sender.get());
    }
    // What another copy hands over now gets to this one.
    void ExpectHandOver(const std::vector<std::wstring>& names) {
        Listen();
        ExpectTaken(Sender(names), names.size());
        EXPECT_EQ(names_, names);
    }

    std::unique_ptr<RunningCopy> role_ = RunningCopy::Claim();
    std::vector<std::wstring> names_;
};
