// A dialog is never behind the program's own notes that stay above other windows.
#include <gtest/gtest.h>

#include "notes/frmNote.h"
#include "notes/frmProperties.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Events.h"
#include "tests/support/Stacking.h"

namespace {

class DialogsAboveNotes : public testing::Test {
  protected:
    ~DialogsAboveNotes() override {
        dialog_->Destroy();
        for (NotePtr& note : notes_) note.reset();
        RunEvents();
    }

    frmNote& ShowNote(bool foreground) {
        notes_.emplace_back(new frmNote(recorder_));
        frmNote& note = *notes_.back();
        note.PlaceAt(1500, 1500);
        note.SizeTo(4500, 4500);
        SetForeground(note, foreground);
        return note;
    }

    static void ShowDialog(frmProperties& dialog) {
        dialog.Show();
        dialog.Raise();
    }
    static void SetForeground(frmNote& note, bool foreground) {
        note.HiddenForeground(foreground);
        note.ShowStacked();
    }

    NoteRecorder recorder_;
    std::vector<NotePtr> notes_;
    frmProperties* dialog_ = new frmProperties(L"Neue Notiz");
};

TEST_F(DialogsAboveNotes, WhicheverComesLast) {
    frmNote& first = ShowNote(true);
    ShowDialog(*dialog_);
    EXPECT_TRUE(RunUntil([&] { return StandsAbove(*dialog_, first); }));
    frmProperties& upper = *new frmProperties(L"Notiz bearbeiten");
    ShowDialog(upper);
    frmNote& second = ShowNote(true);
    const auto above = [&] {
        return StandsAbove(upper, *dialog_) && StandsAbove(*dialog_, first) && StandsAbove(*dialog_, second);
    };
    const std::pair<const char*, std::function<void()>> steps[] = {
        {"another", [] {}},
        {"to the front", [&] { first.BringToFront(); }},
        {"stacked again", [&] { second.ShowStacked(); }},
        {"away",
         [&] {
             first.Minimized(true);
             first.Minimized(false);
         }},
        {"with the keyboard", [&] { first.TakeFocus(); }},
    };
    for (const auto& [name, act] : steps) {
        SCOPED_TRACE(name);
        act();
        RunEvents(std::chrono::milliseconds(200));
        EXPECT_TRUE(RunUntil(above));
    }
    upper.Destroy();
}

TEST_F(DialogsAboveNotes, AboveOtherProgramsOnlyWhileANoteIsAndKeepTheKeyboard) {
    frmNote& note = ShowNote(false);
    ShowDialog(*dialog_);
    ASSERT_TRUE(RunUntil([&] { return dialog_->IsActive(); }));
    frmNote& ordinary = ShowNote(false);
    const struct {
        const char* name;
        std::function<void()> act;
        bool above;
    } steps[] = {
        {"beside a note", [] {}, false},
        {"foreground", [&] { SetForeground(note, true); }, true},
        {"another in front",
         [&] {
             ordinary.BringToFront();
             EXPECT_TRUE(RunUntil([&] { return IsKeptAbove(note) && StandsAbove(note, ordinary); }));
             EXPECT_TRUE(dialog_->IsActive());
         },
         true},
        {"minimized", [&] { note.Minimized(true); }, false},
        {"restored", [&] { note.Minimized(false); }, true},
        {"no foreground", [&] { SetForeground(note, false); }, false},
        {"again", [&] { SetForeground(note, true); }, true},
        {"deleted", [&] { notes_.clear(); }, false},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.name);
        step.act();
        RunEvents(std::chrono::milliseconds(100));
        EXPECT_TRUE(RunUntil([&] { return IsKeptAbove(*dialog_) == step.above; }));
    }
}

}  // namespace
