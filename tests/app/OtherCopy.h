#pragma once
// Another copy of the program in a process of its own, as far as the hand-over goes.

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/HandOver.h"
#include "tests/support/Events.h"

class OtherCopy {
  public:
    // Hands these names over one after the other. Its result is 0 when all were taken, else 1.
    static OtherCopy Sender(const std::vector<std::wstring>& names);
    // Has the role until it is killed. Returns when it has it.
    static OtherCopy Holder();
    // Linux only. Does this; what that returns is its result.
    static OtherCopy Doing(const std::function<int()>& work);

    OtherCopy(OtherCopy&& other) noexcept;
    ~OtherCopy();  // kills it

    void Kill();
    bool Ended();
    int Result() const;

  private:
    struct Process;
    explicit OtherCopy(std::unique_ptr<Process> process);
    std::unique_ptr<Process> process_;
};

// Names such as files have on this platform, from the root of the file system on.
std::vector<std::wstring> NamesOfAllKinds();

// As many copies as somebody may start at once.
int ManyCopies();

// The running copy, which is this process, and the names that it was handed.
class HandOverFixture : public testing::Test {
  protected:
    void Listen() {
        role_->Listen([this](const Command& command) {
            names_.push_back(command.arguments[0]);
            return CommandAnswer();
        });
    }
    // The other copy hears that so many names were taken, and they arrive.
    void ExpectTaken(OtherCopy& sender, std::size_t names = 1) {
        EXPECT_TRUE(RunUntil([&] { return sender.Ended() && names_.size() >= names; }));
        EXPECT_EQ(sender.Result(), 0);
    }

    std::unique_ptr<RunningCopy> role_ = RunningCopy::Claim();
    std::vector<std::wstring> names_;
};
