
#include <set>

#include "tests/addressbook/Entries.h"
#include "tests/notes/StoreTest.h"

using NoteStoreTest = StoreTest;

TEST_F(NoteStoreTest, LoadsWhatIsKeptAndKeepsIt) {
    const Note notes[] = {{.text = L"a", .look = {.bold = true}, .place = {-150, 30, 3000, 2000}},
                          {.text = L"b", .foreground = true}};
    ASSERT_TRUE(WriteStoredImage(true, {&notes[0], &notes[1]}, {Entry(L"Büro"), Entry(L"BÜRO")}).Kept());
    store.LoadNotes();
    ASSERT_EQ(store.CountNotes(), 2u);
    EXPECT_EQ(store.Notes()[0]->Content(), notes[0]);
    EXPECT_TRUE(store.Notes()[1]->Foreground());
    EXPECT_FALSE(store.Notes()[1]->IsShown());
    EXPECT_TRUE(store.AutostartEnabled);
    EXPECT_EQ(AddressBook().size(), 1u);

    const std::int32_t last = store.Notes().back()->NoteKey();
    EXPECT_EQ(Add(L"neu").NoteKey(), last + 1);
    const StoredImage saved = ReadStoredImage();
    EXPECT_TRUE(saved.autostart);
    EXPECT_EQ(saved.notes.size(), 3u);
    EXPECT_EQ(saved.entries.size(), 1u);
    EmptyAddressBook();

    // What is taken back was never deleted, and is not saved.
    store.OnDelete = [](const Note&) -> KeepResult { return ADD_FAILURE(), KeepResult(); };
    store.TakeBack(*store.Notes().back());
    EXPECT_EQ(store.Find(last + 1), nullptr);
    EXPECT_EQ(ReadStoredImage().notes.size(), 3u);
}

TEST_F(NoteStoreTest, ATextThatIsTooLongGoesOnlyWhenItIsKeptElsewhere) {
    const Note longNote = {.text = std::wstring(5000, L'x'), .creationTime = L"heute"};
    const std::wstring path = std::wstring(kSettingsKey) + L"Note0\\Text";
    ASSERT_TRUE(WriteStoredImage(false, {&longNote}, {}).Kept());
    std::vector<Note> kept;
    for (const KeepFailure failure : {KeepFailure::DiskFull, KeepFailure::None}) {
        NoteStore loaded(recorder);
        loaded.OnLongText = [&](const Note& note) { return kept.push_back(note), KeepResult{failure}; };
        loaded.LoadNotes();
        const bool stays = failure != KeepFailure::None;
        EXPECT_EQ(kept.back(), longNote);
        EXPECT_EQ(loaded.Notes()[0]->Text(), stays ? longNote.text : L"");
        EXPECT_EQ(WholeText(path), stays ? longNote.text : L"");
        EXPECT_TRUE(loaded.AllKept());
    }
    EXPECT_EQ(kept.size(), 2u);
}

TEST_F(NoteStoreTest, MinimizeAllIsUndoneForItsOwnNotesOnly) {
    frmNote& first = Add(L"1");
    frmNote& second = Add(L"2");
    frmNote& third = Add(L"3");
    EXPECT_FALSE(first.WindowRect().Intersects(second.WindowRect())) << "a new note covers none";
    first.Minimized(true);
    EXPECT_EQ(store.CountVisibleNotes(), 2u);
    EXPECT_EQ(store.CountMinimizedByCommand(), 0u);

    store.MinimizeAll();
    EXPECT_EQ(store.CountVisibleNotes(), 0u);
    EXPECT_EQ(store.CountMinimizedByCommand(), 2u);
    store.ForgetMinimizedNote(second);
    store.ForgetMinimizedNote(first);  // was never in the set
    EXPECT_EQ(store.CountMinimizedByCommand(), 1u);

    store.UnMinimizeAll();
    EXPECT_TRUE(first.Minimized());
    EXPECT_TRUE(second.Minimized());
    EXPECT_FALSE(third.Minimized());
    EXPECT_EQ(&store.NextShown(third, true), &third) << "no other has a window";
    EXPECT_EQ(store.CountMinimizedByCommand(), 0u);
    store.UnMinimizeAll();  // nothing to undo any more

    // Only a deleted note was minimized by the command: there is nothing to bring back.
    store.MinimizeAll();
    EXPECT_TRUE(store.DeleteNote(third));
    EXPECT_EQ(ReadStoredImage().notes.size(), 2u);
    EXPECT_EQ(store.CountMinimizedByCommand(), 0u);
    store.MinimizeAll();
    EXPECT_EQ(store.CountMinimizedByCommand(), 0u);
}

TEST_F(NoteStoreTest, ShowNotesShowsThemAllThoughSomeGoMeanwhile) {
    std::vector<frmNote*> notes;
    for (int i = 0; i < 40; ++i) notes.push_back(&store.AdoptNote({}));
    notes[1]->HiddenForeground(true);
    bool done = false;
    store.ShowNotes([&] { done = true; });
    EXPECT_TRUE(notes[0]->IsShown());
    EXPECT_FALSE(notes[1]->IsShown());
    notes[20]->Minimized(true);
    store.DeleteNote(*notes[38]);
    EXPECT_TRUE(store.AddNoteIfKept({.text = L"a"}).Kept());
    EXPECT_TRUE(RunUntil([&] { return done; }));
    for (const NotePtr& note : store.Notes()) EXPECT_NE(note->IsShown(), note.get() == notes[20]);
    EXPECT_EQ(store.CountNotes(), 40u);
    // What comes soon after another is shown a little later.
    for (const wchar_t* text : {L"b", L"c"}) EXPECT_TRUE(store.AddNoteIfKept({.text = text}).Kept());
    EXPECT_TRUE(RunUntil([&] { return store.Notes().back()->IsShown(); }));
}

TEST_F(NoteStoreTest, WhatIsReadLateComesBesideWhatIsThere) {
    const Note note = {.text = L"a"};
    ASSERT_TRUE(WriteStoredImage(false, {&note, &note}, {}).Kept());
    store.AdoptNote({.text = L"eigene"});
    store.LoadNotes();
    std::set<std::int32_t> keys;
    for (const NotePtr& each : store.Notes()) keys.insert(each->NoteKey());
    EXPECT_EQ(keys.size(), 3u);
    EXPECT_FALSE(store.AllKept());
}
