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
    });
    self = &unsaved;
    unsaved.Heard({});
    EXPECT_FALSE(unsaved.Any());

    unsaved.Heard({KeepFailure::DiskFull});
    unsaved.Heard({KeepFailure::DiskFull});
    EXPECT_TRUE(unsaved.Any());
    EXPECT_TRUE(told.messages.empty());  // not within what has just saved
    EXPECT_TRUE(RunUntil([&] { return repeats == 1; }));
    ASSERT_EQ(told.messages.size(), 1u);
    EXPECT_TRUE(told.messages[0].starts_with(L"Nicht gespeichert|16|"));

    works = true;
    EXPECT_TRUE(RunUntil([&] { return repeats == 2; }));
    EXPECT_FALSE(unsaved.Any());
    EXPECT_EQ(told.messages.size(), 1u);

    {
        const Unsaved::Quiet asked(unsaved);
        unsaved.Heard({KeepFailure::Locked});
        RunPosted();
        unsaved.Heard({});
    }
    unsaved.Heard({KeepFailure::Locked});
    unsaved.Heard({});
    RunPosted();
    EXPECT_EQ(told.messages.size(), 1u);
    unsaved.Heard({KeepFailure::Locked});
    EXPECT_TRUE(RunUntil([&] { return told.messages.size() == 2; }));
}
