// The store on a hive that cannot be written.

#include "model/StoredImage.h"
#include "notes/NoteStore.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/registry/HiveFolder.h"
#include "tests/support/Events.h"

namespace {

class UnkeptNotes : public testing::Test {
  protected:
    UnkeptNotes() {
        std::filesystem::create_directories(hive.File());  // no file can lie there
        store.OnSaved = [this](const KeepResult& result) { heard.push_back(result.Kept()); };
    }
    ~UnkeptNotes() override { store.UnloadAllNotes(); }

    HiveFolder hive;
    NoteRecorder recorder;
    NoteStore store{recorder};
    std::vector<bool> heard;
};

}  // namespace

TEST_F(UnkeptNotes, AreDeletedOnlyIntoABin) {
    frmNote& first = store.AddNote({.text = L"eins"});
    frmNote& second = store.AddNote({.text = L"zwei"});
    EXPECT_FALSE(store.AllKept());
    EXPECT_FALSE(store.AddNoteIfKept({.text = L"fremde"}).Kept()) << "its sender is told";
    EXPECT_FALSE(store.RestoreNotes({{.text = L"aus dem Papierkorb"}}).Kept()) << "it stays there";
    bool bin = false;
    store.OnDelete = [&](const Note&) { return bin ? KeepResult() : KeepResult{KeepFailure::DiskFull}; };
    std::vector<std::wstring> unbinned;
    store.OnUnbinned = [&](const Note& note, bool gone, const KeepResult& why) {
        EXPECT_FALSE(gone);
        EXPECT_EQ(why.failure, KeepFailure::DiskFull);
        unbinned.push_back(note.text);
    };
    EXPECT_FALSE(store.DeleteNote(first));
    EXPECT_EQ(unbinned, std::vector<std::wstring>{L"eins"});
    ASSERT_EQ(store.CountNotes(), 2u);
    EXPECT_EQ(store.Notes()[0].get(), &first);
    EXPECT_TRUE(first.IsShown());
    bin = true;
    EXPECT_TRUE(store.DeleteNote(second));
    EXPECT_EQ(store.CountNotes(), 1u);
    EXPECT_EQ(heard, (std::vector<bool>{false, false, false}));
}
