#include <gtest/gtest.h>

#include "notes/NoteWindow.h"
#include "notes/frmNote.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Events.h"

// What follows must not be left out because a window does not come.
TEST(NoteWindow, WhoWaitsForTheScreenIsCalledOnceWhateverHappens) {
    NoteRecorder recorder;
    const struct {
        const char* name;
        void (*act)(NotePtr& note);
    } rows[] = {
        {"it comes", [](NotePtr& note) { note->ShowStacked(); }},
        {"it never comes", [](NotePtr&) {}},
        {"it goes first", [](NotePtr& note) { note.reset(); }},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        NotePtr note(new frmNote(recorder));
        note->Place({3000, 3000, 3000, 2400});
        int calls = 0;
        WhenOnScreen(*note, [&] { ++calls; });
        EXPECT_EQ(calls, 0);
        row.act(note);
        EXPECT_TRUE(RunUntil([&] { return calls > 0; }));
        note.reset();
        RunEvents();
        EXPECT_EQ(calls, 1);
    }
}
