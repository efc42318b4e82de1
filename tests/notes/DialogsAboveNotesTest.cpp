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
        note.HiddenForeground(foreground);
        note.PlaceAt(1500, 1500);
        note.SizeTo(4500, 4500);
        note.ShowStacked();
        return note;
    }

    void ShowDialog() {
        dialog_->Show();
        dialog_->Raise();
    }

    NoteRecorder recorder_;
    std::vector<NotePtr> notes_;
    frmProperties* dialog_ = new frmProperties(L"Neue Notiz");
};

TEST_F(DialogsAboveNotes, WhicheverComesLast) {
    frmNote& first = ShowNote(true);
    ShowDialog();
    EXPECT_TRUE(RunUntil([&] { return StandsAbove(*dialog_, first); }));
    frmNote& second = ShowNote(true);
    const auto above = [&] { return StandsAbove(*dialog_, first) && StandsAbove(*dialog_, second); };
    const struct {
        const char* name;
        std::function<void()> act;
    } steps[] = {
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
    for (const auto& step : steps) {
        SCOPED_TRACE(step.name);
        step.act();
        RunEvents(std::chrono::milliseconds(200));
        EXPECT_TRUE(RunUntil(above));
    }
}

TEST_F(DialogsAboveNotes, AllOfThem) {
    frmNote& note = ShowNote(true);
    ShowDialog();
    auto* second = new frmProperties(L"Notiz bearbeiten");
    second->Show();
    second->Raise();
    const auto above = [&] { return StandsAbove(*second, *dialog_) && StandsAbove(*dialog_, note); };
    EXPECT_TRUE(RunUntil(above));
    note.BringToFront();
    RunEvents(std::chrono::milliseconds(200));
    EXPECT_TRUE(RunUntil(above));
    note.TakeFocus();
    RunEvents(std::chrono::milliseconds(200));
    EXPECT_TRUE(RunUntil(above));
    second->Destroy();
}

TEST_F(DialogsAboveNotes, KeepTheKeyboardWhenNotesCome) {
    ShowDialog();
    ASSERT_TRUE(RunUntil([&] { return dialog_->IsActive(); }));
    for (const bool foreground : {false, true}) {
        frmNote& note = ShowNote(foreground);
        note.ShowStacked();
        RunEvents(std::chrono::milliseconds(200));
        EXPECT_TRUE(dialog_->IsActive()) << foreground;
        EXPECT_FALSE(note.IsActive()) << foreground;
    }
}

TEST_F(DialogsAboveNotes, AboveOtherProgramsOnlyWhileANoteIs) {
    frmNote& note = ShowNote(false);
    ShowDialog();
    const struct {
        const char* name;
        std::function<void()> act;
        bool above;
    } steps[] = {
        {"beside a note", [] {}, false},
        {"foreground",
         [&] {
             note.HiddenForeground(true);
             note.ShowStacked();
         },
         true},
        {"minimized", [&] { note.Minimized(true); }, false},
        {"restored", [&] { note.Minimized(false); }, true},
        {"no foreground",
         [&] {
             note.HiddenForeground(false);
             note.ShowStacked();
         },
         false},
        {"again",
         [&] {
             note.HiddenForeground(true);
             note.ShowStacked();
         },
         true},
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
