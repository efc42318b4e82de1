#include <gtest/gtest.h>

#include <algorithm>

#include "model/AddressBook.h"
#include "notes/NoteStore.h"
#include "registry/clsRegistry.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/registry/RegistryImage.h"
#include "tests/support/Events.h"

namespace {

class NoteStoreTest : public testing::Test {
  protected:
    NoteStoreTest() { Registry().DeleteKey(kSettingsKey); }
    ~NoteStoreTest() override { Registry().DeleteKey(kSettingsKey); }

    frmNote& Add(NoteStore& store, const std::wstring& text) {
        NotePtr note = store.CreateNote();
        note->Text(text);
        return store.AddNote(std::move(note));
    }
    static std::vector<std::wstring> Texts(const NoteStore& store) {
        std::vector<std::wstring> texts;
        for (const NotePtr& note : store.Notes()) texts.push_back(note->Text());
        return texts;
    }
    static std::vector<std::wstring> Subkeys() {
        std::vector<std::wstring> names;
        Registry().EnumKeys(kSettingsKey, names);
        return names;
    }
    static std::wstring Key(const std::wstring& name) { return kSettingsKey + name; }

    NoteRecorder recorder;
    NoteStore store{recorder};
};

using Strings = std::vector<std::wstring>;

}  // namespace

// What stands here is what the programs of all platforms write and read.
TEST_F(NoteStoreTest, TheImageHoldsEveryProperty) {
    const std::string image =
        "Autostart\t4\t01000000\n"
        "AddressBookEntry0\\\n"
        "AddressBookEntry0\\Comment\t1\tim 2. Stock, „hinten“\n"
        "AddressBookEntry0\\IP\t1\t192.168.0.17\n"
        "AddressBookEntry0\\PCName\t1\tBüro\n"
        "Note0\\\n"
        "Note0\\Color\t4\t00ffff00\n"
        "Note0\\CreationTime\t1\t21.11.2026, 09:05:00\n"
        "Note0\\FontAlignment\t4\t02000000\n"
        "Note0\\FontBold\t4\t01000000\n"
        "Note0\\FontItalic\t4\t00000000\n"
        "Note0\\FontSize\t4\t11000000\n"
        "Note0\\FontUnderlined\t4\t01000000\n"
        "Note0\\Foreground\t4\t01000000\n"
        "Note0\\Height\t4\td0070000\n"
        "Note0\\Text\t1\tKäse & „Brot“\\r\\n3 €\n"
        "Note0\\Width\t4\t050d0000\n"
        "Note0\\X\t4\t6affffff\n"
        "Note0\\Y\t4\td2040000\n";
    ASSERT_TRUE(WriteImage(image));
    store.LoadNotes();
    ASSERT_EQ(store.CountNotes(), 1u);
    const frmNote& note = *store.Notes()[0];
    EXPECT_EQ(note.Text(), L"Käse & „Brot“\r\n3 €");
    EXPECT_EQ(note.CreationTime(), L"21.11.2026, 09:05:00");
    EXPECT_EQ(note.Color(), kLightBlue);
    EXPECT_EQ(note.FontNoteSize(), 17);
    EXPECT_TRUE(note.FontNoteBold());
    EXPECT_FALSE(note.FontNoteItalic());
    EXPECT_TRUE(note.FontNoteUnderlined());
    EXPECT_EQ(note.FontNoteAlignment(), kAlignCentre);
    EXPECT_TRUE(note.Foreground());
    EXPECT_EQ(note.Left(), -150);
    EXPECT_EQ(note.Top(), 1234);
    EXPECT_EQ(note.Width(), 3333);
    EXPECT_EQ(note.Height(), 2000);
    EXPECT_TRUE(store.AutostartEnabled);
    EXPECT_FALSE(note.IsShown());

    Registry().DeleteKey(kSettingsKey);
    store.SaveNotes();
    EXPECT_EQ(ReadImage(), image);
    EXPECT_TRUE(RemoveAddressBookEntry(L"büro"));
}

TEST_F(NoteStoreTest, SubkeysAreRenumberedInTheirOrder) {
    for (const wchar_t* name :
         {L"Note0", L"Note2", L"Note10", L"NoteX", L"note7", L"Nota", L"AddressBookEntry0"}) {
        Registry().SetValue(Key(name) + L"\\Text", REG_TYPE_SZ, std::wstring(name));
    }
    Registry().SetValue(Key(L"AddressBookEntry0\\PCName"), REG_TYPE_SZ, std::wstring(L"Büro"));
    store.LoadNotes();
    EXPECT_EQ(Texts(store), (Strings{L"Note0", L"Note10", L"Note2", L"NoteX"}));
    // The key of a note is its position among all subkeys.
    EXPECT_EQ(store.Notes()[0]->NoteKey(), 2);

    store.SaveNotes();
    EXPECT_EQ(Subkeys(), (Strings{L"AddressBookEntry0", L"Note0", L"Note1", L"Note2", L"Note3"}));
    EXPECT_EQ(AsText(Registry().GetValue(Key(L"Note1\\Text"), REG_TYPE_SZ)), L"Note10");
    EXPECT_EQ(AsText(Registry().GetValue(Key(L"AddressBookEntry0\\PCName"), REG_TYPE_SZ)), L"Büro");

    const std::int32_t last = store.Notes().back()->NoteKey();
    EXPECT_EQ(Add(store, L"neu").NoteKey(), last + 1);
    EXPECT_TRUE(RemoveAddressBookEntry(L"büro"));
}

TEST_F(NoteStoreTest, StartsWithWhateverIsThere) {
    store.LoadNotes();
    EXPECT_EQ(store.CountNotes(), 0u);
    EXPECT_FALSE(store.AutostartEnabled);
    Registry().CreateKey(kSettingsKey);
    store.LoadNotes();
    EXPECT_EQ(store.CountNotes(), 0u);
    Registry().CreateKey(Key(L"Note5"));
    store.LoadNotes();
    ASSERT_EQ(store.CountNotes(), 1u);
    EXPECT_EQ(store.Notes()[0]->Text(), L"");
    EXPECT_EQ(store.Notes()[0]->FontNoteSize(), 0);
}

TEST_F(NoteStoreTest, DeletingTheLastNoteLeavesTheRest) {
    frmNote& note = Add(store, L"einzige");
    const std::int32_t key = note.NoteKey();
    EXPECT_EQ(store.Find(key), &note);
    EXPECT_EQ(Subkeys(), Strings{L"Note0"});
    store.DeleteNote(note);
    EXPECT_EQ(store.Find(key), nullptr);
    EXPECT_EQ(store.CountNotes(), 0u);
    EXPECT_EQ(Subkeys(), Strings{L""});
    EXPECT_TRUE(Registry().KeyExists(kSettingsKey));
}

TEST_F(NoteStoreTest, MinimizeAllIsUndoneForItsOwnNotesOnly) {
    frmNote& first = Add(store, L"1");
    frmNote& second = Add(store, L"2");
    frmNote& third = Add(store, L"3");
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
    EXPECT_EQ(store.CountMinimizedByCommand(), 0u);
    store.UnMinimizeAll();  // nothing to undo any more

    // Only a deleted note was minimized by the command: there is nothing to bring back.
    store.MinimizeAll();
    store.DeleteNote(third);
    EXPECT_EQ(store.CountMinimizedByCommand(), 0u);
    store.MinimizeAll();
    EXPECT_EQ(store.CountMinimizedByCommand(), 0u);
}

TEST_F(NoteStoreTest, NextShownGoesRoundAndLeavesMinimizedNotesOut) {
    frmNote& only = Add(store, L"1");
    EXPECT_EQ(&store.NextShown(only, true), &only);
    frmNote& second = Add(store, L"2");
    frmNote& third = Add(store, L"3");
    frmNote& fourth = Add(store, L"4");
    third.Minimized(true);
    EXPECT_EQ(&store.NextShown(only, true), &second);
    EXPECT_EQ(&store.NextShown(second, true), &fourth);
    EXPECT_EQ(&store.NextShown(fourth, true), &only);
    EXPECT_EQ(&store.NextShown(only, false), &fourth);
    EXPECT_EQ(&store.NextShown(fourth, false), &second);
    EXPECT_EQ(&store.NextShown(third, true), &fourth);
}

TEST_F(NoteStoreTest, ShowNotesShowsThemAllThoughSomeGoMeanwhile) {
    std::vector<frmNote*> notes;
    for (int i = 0; i < 40; ++i) notes.push_back(&store.AdoptNote(store.CreateNote()));
    notes[1]->HiddenForeground(true);
    bool done = false;
    store.ShowNotes([&] { done = true; });
    EXPECT_TRUE(notes[0]->IsShown());
    EXPECT_FALSE(notes[1]->IsShown());
    store.DeleteNote(*notes[38]);
    const auto shown = [&] {
        return std::all_of(store.Notes().begin(), store.Notes().end(),
                           [](const NotePtr& note) { return note->IsShown(); });
    };
    EXPECT_TRUE(RunUntil([&] { return done; }));
    EXPECT_TRUE(shown());
    EXPECT_EQ(store.CountNotes(), 39u);
}
