// What is unsaved at the end of the program, and what becomes of it at the next start.
#include <wx/button.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <cstdlib>

#include "app/EmergencyFile.h"
#include "app/Keeping.h"
#include "app/frmUnsaved.h"
#include "base/FileName.h"
#include "model/KeepReason.h"
#include "notes/frmProperties.h"
#include "tests/addressbook/Entries.h"
#include "tests/exchange/FileDialogOnScreen.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/registry/HiveFolder.h"
#include "tests/support/Dialogs.h"
#include "tests/support/Messages.h"

namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::wstring>;

// One run of the program with the hive of the test.
struct ProgramRun : MessageRecorder {
    ProgramRun() {
        keeping.Load();
        keeping.TakeInLeftWork();
        keeping.Tell(Keeping::Boxes::Unwaited);
    }
    ~ProgramRun() {
        store.UnloadAllNotes();
        EmptyAddressBook();
        Hive().Close();
    }
    Texts NoteTexts() const {
        Texts texts;
        for (const NotePtr& note : store.Notes()) texts.push_back(note->Text());
        return texts;
    }
    void SetText(std::size_t index, const std::wstring& text) {
        Note note = store.Notes()[index]->Content();
        note.text = text;
        store.Notes()[index]->Content(note);
    }

    NoteRecorder recorder;
    NoteStore store{recorder};
    Keeping keeping{store};
};

class KeepingTest : public testing::Test {
  protected:
    KeepingTest() {
        ProgramRun first;
        first.store.AdoptNote({.text = L"eins"});
        first.store.AdoptNote({.text = L"zwei", .place = {10.4, 20.6, 3000, 2000}});
        AddAddressBookEntry(Entry(L"Büro"));
        EXPECT_TRUE(first.store.SaveNotes().Kept());
    }

    // From now on nothing can be saved, and again.
    void Block() const {
        fs::rename(hive_.File(), Away());
        fs::create_directory(hive_.File());
    }
    void Unblock() const {
        fs::remove(hive_.File());
        fs::rename(Away(), hive_.File());
    }
    // A run that deletes a note and the address, changes a note and adds one, and cannot save.
    void EndUnsaved(const Texts& files = {}) const {
        ProgramRun run;
        Block();
        run.store.DeleteNote(*run.store.Notes()[0]);
        run.SetText(0, L"zwei, geändert");
        run.store.AdoptNote({.text = L"drei"});
        RemoveAddressBookEntry(L"Büro");
        run.keeping.KeepAtOnce(files);
        EXPECT_FALSE(run.store.AllKept());
        Unblock();
    }
    static bool IsFileLeft() { return !EmergencyFiles(EmergencyFolders()).empty(); }

    const HiveFolder hive_;

  private:
    fs::path Away() const { return hive_.Folder() / "away"; }
};

}  // namespace

TEST_F(KeepingTest, UnsavedWorkTakesThePlaceOfWhatWasSavedLast) {
    EndUnsaved({L"/gibt/es nicht.kvr"});
    const ProgramRun next;
    EXPECT_EQ(next.NoteTexts(), (Texts{L"zwei, geändert", L"drei"}));
    EXPECT_TRUE(AddressBook().empty());
    EXPECT_TRUE(next.store.AllKept());
    EXPECT_FALSE(IsFileLeft());
    EXPECT_EQ(
        next.messages,
        (Texts{L"Fehler beim Importieren|16|Beim Importieren der Notizen aus /gibt/es nicht.kvr ist ein "
               L"Fehler aufgetreten.",
               L"Notizen übernommen|64|Kivora musste enden, bevor alles gespeichert war. Was noch nicht "
               L"gespeichert war, lag in einer Notfalldatei.\r\n2 Notizen wurden daraus übernommen und "
               L"gespeichert."}));
}

TEST_F(KeepingTest, NotesOfAnEmergencyFileThatWasCutOffAreAdded) {
    EndUnsaved();
    const fs::path file = EmergencyFiles(EmergencyFolders()).at(0);
    fs::resize_file(file, fs::file_size(file) - 1);
    EXPECT_EQ(ProgramRun().NoteTexts(), (Texts{L"eins", L"zwei", L"zwei, geändert", L"drei"}));
    EXPECT_FALSE(IsFileLeft());
}

TEST_F(KeepingTest, TheEndSaves) {
    {
        ProgramRun run;
        run.SetText(0, L"neu");
        run.keeping.KeepAtOnce({});
    }
    EXPECT_FALSE(IsFileLeft());
    EXPECT_EQ(ProgramRun().NoteTexts(), (Texts{L"neu", L"zwei"}));
}

TEST_F(KeepingTest, UnsavedWorkIsAddedToWhatWasSavedSince) {
    EndUnsaved();
    {
        NoteRecorder recorder;
        NoteStore other(recorder);  // of a program that takes nothing in
        other.LoadNotes();
        other.AdoptNote({.text = L"vier"});
        EXPECT_TRUE(other.WriteImage().Kept());
        other.UnloadAllNotes();
        EmptyAddressBook();
    }
    const ProgramRun next;
    EXPECT_EQ(next.NoteTexts(), (Texts{L"eins", L"zwei", L"vier", L"zwei, geändert", L"drei"}));
    EXPECT_EQ(AddressBook().size(), 1u);
    EXPECT_FALSE(IsFileLeft());
}

TEST_F(KeepingTest, TheStartSaysWhatIsTheMatter) {
    hive_.Sql("PRAGMA user_version = 99");
    EXPECT_EQ(ProgramRun().messages,
              Texts{L"Nicht gespeichert|16|Änderungen an Ihren Notizen können zurzeit nicht gespeichert "
                    L"werden.\r\n\r\n" +
                    ReasonText({KeepFailure::TooNew})});
    Block();
    EXPECT_EQ(ProgramRun().messages,
              Texts{L"Notizen nicht lesbar|16|Ihre Notizen können zurzeit nicht gelesen werden. Sie sind "
                    L"nicht verloren: Kivora versucht es weiter und zeigt sie, sobald es gelingt. Bis dahin "
                    L"trägt sein Symbol ein Warnzeichen.\r\n\r\n" +
                    ReasonText({.failure = KeepFailure::NoFile, .file = FileName(hive_.File())})});
}

TEST_F(KeepingTest, TheIconSaysWhatIsTheMatter) {
    Block();
    ProgramRun run;
    std::vector<Trouble> shown;
    run.keeping.OnTrouble([&](Trouble trouble) { shown.push_back(trouble); });
    EXPECT_EQ(shown, std::vector<Trouble>{Trouble::Unreadable});
    Unblock();
    EXPECT_TRUE(RunUntil([&] { return run.store.CountNotes() == 2; }));
    EXPECT_EQ(shown.back(), Trouble::None);
    Block();
    run.SetText(0, L"neu");
    EXPECT_FALSE(run.store.SaveNotes().Kept());
    EXPECT_EQ(shown.back(), Trouble::Unsaved);
    Unblock();
    EXPECT_TRUE(run.store.SaveNotes().Kept());
    EXPECT_EQ(shown.back(), Trouble::None);
}

// A text that is being written is work, too.
TEST_F(KeepingTest, WithoutABinTheUserIsAskedBeforeATextIsDropped) {
    ProgramRun run;
    bool bin = false;
    run.store.OnDelete = [&](const Note&) {
        return KeepResult{bin ? KeepFailure::None : KeepFailure::DiskFull};
    };
    std::vector<std::wstring> reasons;
    WhenShown<frmUnsaved> asked([&](frmUnsaved& dialog) {
        reasons.push_back(dialog.lblReason->GetLabelText().ToStdWstring());
        Press(dialog.cmdOK);
        reasons.push_back(dialog.lblReason->GetLabelText().ToStdWstring());
        Press(dialog.cmdAbbrechen);
    });
    WhenShown<frmProperties> written([&](frmProperties& dialog) {
        dialog.txtMessage->SetValue(L"noch nichts");
        EXPECT_FALSE(run.keeping.MayQuit());
        bin = true;
        EXPECT_TRUE(run.keeping.MayQuit());
        Press(dialog.cmdAbbrechen);
    });
    NewNote(run.store);
    ASSERT_EQ(reasons.size(), 2u);
    EXPECT_TRUE(reasons[0].starts_with(L"Auf dem Laufwerk")) << reasons[0];
    EXPECT_TRUE(reasons[1].starts_with(L"Um ")) << reasons[1];
    EXPECT_NE(reasons[1].find(L"Uhr erneut versucht, ohne Erfolg."), std::wstring::npos);
    EXPECT_TRUE(run.messages.empty());
}

TEST_F(KeepingTest, WhatIsSavedIntoAFileIsNotKeptElsewhere) {
    ProgramRun run;
    Block();
    run.SetText(0, L"neu");
    const fs::path file = fs::path(std::getenv("TMPDIR")) / "gesichert.kvr";
    WhenShown<frmUnsaved> asked([](frmUnsaved& dialog) { Press(dialog.cmdDatei); });
    Repeated* const chooser = ChooseOnScreen([&] { return file; });
    EXPECT_TRUE(run.keeping.MayQuit());
    chooser->End();
    run.keeping.KeepAtOnce({});
    Unblock();
    EXPECT_FALSE(IsFileLeft());
    const auto saved = ReadEmergencyBytes(Content(file));
    ASSERT_TRUE(saved && saved->notes.size() == 2);
    EXPECT_EQ(saved->notes[0].text, L"neu");
}
