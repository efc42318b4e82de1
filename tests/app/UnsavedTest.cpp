#include <gtest/gtest.h>

#include "app/Unsaved.h"
#include "tests/support/Events.h"
#include "tests/support/Messages.h"

TEST(Unsaved, IsToldOnceAndRepeatedUntilItIsSaved) {
    MessageRecorder told;
    int repeats = 0;
    bool works = false;
    Unsaved* self = nullptr;
    Unsaved unsaved([&] {
        ++repeats;
        self->Heard(works ? KeepResult() : KeepResult{KeepFailure::DiskFull});
        return true;
    });
    self = &unsaved;
    std::vector<bool> changes;
    unsaved.OnChange = [&](bool any) { changes.push_back(any); };
    unsaved.Heard({});
    EXPECT_TRUE(changes.empty());

    unsaved.Heard({KeepFailure::DiskFull});
    unsaved.Heard({KeepFailure::DiskFull});
    EXPECT_EQ(changes, std::vector<bool>{true});
    EXPECT_TRUE(told.messages.empty());  // not within what has just saved
    EXPECT_TRUE(RunUntil([&] { return repeats == 1; }));
    ASSERT_EQ(told.messages.size(), 1u);
    EXPECT_TRUE(told.messages[0].starts_with(L"Nicht gespeichert|16|"));

    works = true;
    EXPECT_TRUE(RunUntil([&] { return repeats == 2; }));
    EXPECT_EQ(changes, (std::vector<bool>{true, false}));
    EXPECT_EQ(told.messages.size(), 1u);

    {
        const Unsaved::Quiet asked(unsaved);
        unsaved.Heard({KeepFailure::Locked});
        unsaved.Heard({});
    }
    RunEvents();
    EXPECT_EQ(told.messages.size(), 1u);
    unsaved.Heard({KeepFailure::Locked});
    EXPECT_TRUE(RunUntil([&] { return told.messages.size() == 2; }));
}
