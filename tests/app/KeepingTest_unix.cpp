// What is unsaved at the end of the program, and what becomes of it at the next start.
#include <wx/button.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>

#include <cstdlib>

#include "app/Autostart.h"
#include "app/CopyCommands.h"
#include "app/EmergencyFile.h"
#include "app/Keeping.h"
#include "app/KeptCommands.h"
#include "app/NoteServices.h"
#include "app/Receiving.h"
#include "app/RunCommand.h"
#include "app/frmUnsaved.h"
#include "base/FileName.h"
#include "base/Text.h"
#include "model/KeepReason.h"
#include "net/basNetworkAccess.h"
#include "notes/frmProperties.h"
#include "registry/RegistryHealth.h"
#include "tests/addressbook/Entries.h"
#include "tests/exchange/FileDialogOnScreen.h"
#include "tests/registry/HiveFolder.h"
#include "tests/support/Dialogs.h"
#include "tests/support/Messages.h"
#include "tests/support/SmallDisk_unix.h"

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

    NoteServices services;
    NoteStore& store = services.Store();
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
    ~KeepingTest() override {
        for (const fs::path& file : EmergencyFiles(EmergencyFolders())) fs::remove(file);
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
    // A run that deletes a note and the address, moves a note, adds one and another address, and cannot save.
    void EndUnsaved(const Texts& files = {},
                    void (Keeping::*end)(const Texts&) = &Keeping::KeepAtOnce) const {
        ProgramRun run;
        Block();
        run.store.DeleteNote(*run.store.Notes()[0]);
        run.store.Notes()[0]->PlaceAt(300, 600);
        run.store.AdoptNote({.text = L"drei"});
        RemoveAddressBookEntry(L"Büro");
        AddAddressBookEntry(Entry(L"Flur"));
        (run.keeping.*end)(files);
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
    // Beside it what another file holds is added.
    const auto first = ReadEmergencyBytes(Content(EmergencyFiles(EmergencyFolders()).at(0)));
    ASSERT_TRUE(first);
    const UnsavedImage second{.notes = {{.text = L"vier"}}, .stored = first->stored};
    ASSERT_TRUE(WriteEmergencyFile(second, EmergencyFolders()).Kept());
    const ProgramRun next;
    EXPECT_EQ(next.NoteTexts(), (Texts{L"zwei", L"drei", L"vier"}));
    EXPECT_EQ(next.store.Notes()[0]->Top(), 600);
    ASSERT_EQ(AddressBook().size(), 1u);
    EXPECT_EQ(AddressBook()[0].PCName(), L"Flur");
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
    EndUnsaved({}, &Keeping::KeepWithoutDisplay);
    const fs::path file = EmergencyFiles(EmergencyFolders()).at(0), empty = file.string() + ".kvr";
    fs::resize_file(file, fs::file_size(file) - 1);
    std::ofstream{empty};
    EXPECT_EQ(ProgramRun().NoteTexts(), (Texts{L"eins", L"zwei", L"drei"}));
    EXPECT_FALSE(fs::exists(file));
    EXPECT_TRUE(fs::exists(empty));
}

TEST_F(KeepingTest, WhatWasTakenInStaysInItsFileUntilItIsKept) {
    EndUnsaved();
    const fs::path file = EmergencyFiles(EmergencyFolders()).at(0);
    hive_.Sql("PRAGMA user_version = 99");  // which is read, but not written
    ProgramRun run;
    EXPECT_TRUE(run.messages.back().ends_with(L"Eine Notiz wurde daraus übernommen."));
    {
        const SmallDisk full(64);
        run.keeping.KeepAtOnce({});
    }
    EXPECT_TRUE(fs::exists(file));
    run.keeping.KeepAtOnce({});
    EXPECT_TRUE(IsFileLeft() && !fs::exists(file));
}

TEST_F(KeepingTest, TheEndSavesWhatWasRead) {
    {
        NoteServices services;  // nothing has been read yet
        Keeping keeping(services.Store());
        EXPECT_TRUE(keeping.MayQuit());
        keeping.KeepAtOnce({});
        keeping.KeepWithoutDisplay({});
    }
    {
        ProgramRun run;
        ASSERT_EQ(run.NoteTexts(), (Texts{L"eins", L"zwei"}));
        run.SetText(0, L"neu");
        run.keeping.KeepAtOnce({});
    }
    EXPECT_FALSE(IsFileLeft());
    EXPECT_EQ(ProgramRun().NoteTexts(), (Texts{L"neu", L"zwei"}));
}

TEST_F(KeepingTest, UnsavedWorkIsAddedToWhatWasSavedSince) {
    EndUnsaved();
    {
        NoteServices services;  // of a program that takes nothing in
        NoteStore& other = services.Store();
        other.LoadNotes();
        other.AdoptNote({.text = L"vier"});
        EXPECT_TRUE(other.WriteImage().Kept());
        other.UnloadAllNotes();
        EmptyAddressBook();
    }
    const ProgramRun next;
    EXPECT_EQ(next.NoteTexts(), (Texts{L"eins", L"zwei", L"vier", L"drei"}));
    EXPECT_EQ(AddressBook().size(), 2u);
    EXPECT_FALSE(IsFileLeft());
}

TEST_F(KeepingTest, TheStartSaysWhatIsTheMatter) {
    const std::wstring damaged = L"Die Datei mit Ihren Notizen war beschädigt.";
    fs::resize_file(hive_.File(), 100);
    EXPECT_TRUE(ProgramRun().messages.at(0).starts_with(L"Notizen wiederhergestellt|48|" + damaged));
    fs::resize_file(hive_.File(), 100);
    testing::internal::CaptureStderr();
    EXPECT_EQ(RunCommand({L"--list", {}}), 0);
    EXPECT_TRUE(FromUtf8(testing::internal::GetCapturedStderr()).starts_with(damaged));
    Hive().Close();
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

TEST_F(KeepingTest, WhatCannotBeReadOrSavedIsTriedAgain) {
    EndUnsaved();
    Block();
    ProgramRun run;
    std::vector<Trouble> shown;
    run.keeping.OnTrouble([&](Trouble trouble) { shown.push_back(trouble); });
    EXPECT_EQ(shown, std::vector<Trouble>{Trouble::Unreadable});
    run.store.SaveNotes();  // of nothing, which ends no trying
    fs::remove(hive_.File());
    fs::create_symlink("/nowhere", hive_.File());
    EXPECT_TRUE(RunUntil([] { return HealthOfRegistry().reading.failure == KeepFailure::DeadLink; }));
    Unblock();
    ASSERT_TRUE(RunUntil([&] { return run.messages.size() == 2; }));
    EXPECT_TRUE(run.messages.back().starts_with(L"Notizen übernommen|64|"));
    EXPECT_EQ(run.NoteTexts(), (Texts{L"zwei", L"drei"}));
    EXPECT_EQ(shown.back(), Trouble::None);
    Block();
    run.SetText(0, L"neu");
    EXPECT_FALSE(run.store.SaveNotes().Kept());
    EXPECT_EQ(shown.back(), Trouble::Unsaved);
    Unblock();
    EXPECT_TRUE(RunUntil([&] { return run.store.AllKept(); }));
    EXPECT_EQ(shown.back(), Trouble::None);
}

// And leaves everything as it was.
TEST_F(KeepingTest, WhatCouldNotBeDoneIsSaid) {
    std::ofstream(hive_.Folder() / "papierkorb") << "in the way";
    {
        ProgramRun run;
        NetworkAccess network(run.store);
        Receiving receiving(network, [] {});
        Block();
        EXPECT_FALSE(run.store.DeleteNote(*run.store.Notes()[0]));
        EXPECT_TRUE(run.messages.at(0).starts_with(
            L"Papierkorb|16|Die Notiz wurde nicht gelöscht, denn sie konnte nicht im Papierkorb aufgehoben "
            L"werden.\r\nWo die Datei im Papierkorb"));
        EXPECT_EQ(CopyCommands(run.store, receiving, {}).CarryOut({L"--new", {L"neu"}}).exitCode, 1);
        EXPECT_EQ(run.NoteTexts(), (Texts{L"eins", L"zwei"}));
        EXPECT_FALSE(SetAutostart(run.store, true).Kept());
        EXPECT_FALSE(fs::exists(fs::path(std::getenv("XDG_CONFIG_HOME")) / "autostart" / "kivora.desktop"));
    }
    const fs::path file = hive_.Folder() / "alle.kvr";
    const std::pair<Command, const wchar_t*> alone[] = {
        {{L"--list", {}}, L"Die Notizen können nicht gelesen werden.\n"},
        {{L"--export", {FileName(file)}}, L"Die Notizen können nicht gelesen werden.\n"},
        {{L"--receive", {}}, L"Die Einstellung kann nicht gelesen werden.\n"},
        {{L"--receive", {L"none"}}, L"Es bleibt, wie es war, denn die Einstellung konnte nicht gespeichert"},
    };
    for (const auto& [command, text] : alone) {
        const CommandAnswer answer = CarryOutAlone(command);
        EXPECT_TRUE(answer.exitCode == 1 && answer.text.starts_with(text)) << answer.text;
    }
    EXPECT_FALSE(fs::exists(file));
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

TEST_F(KeepingTest, TheEndIsAsTheUserDecides) {
    ProgramRun run;
    Block();
    run.SetText(0, L"neu");
    const auto mayQuit = [&](const std::function<void(frmUnsaved&)>& answer) {
        WhenShown<frmUnsaved> asked([&](frmUnsaved& dialog) {
            answer(dialog);
            dialog.Close();  // what the buttons have ended already stays so
        });
        return run.keeping.MayQuit();
    };
    EXPECT_TRUE(mayQuit([](frmUnsaved& dialog) { Press(dialog.cmdBeenden); }));

    const fs::path file = fs::path(std::getenv("TMPDIR")) / "gesichert.kvr";
    EXPECT_TRUE(mayQuit([&](frmUnsaved& dialog) {
        Repeated::Every(std::chrono::milliseconds(10), [] {
            const auto chooser = FileDialogOnScreen::Find();
            if (chooser) chooser->Cancel();
            return chooser != nullptr;
        });
        Press(dialog.cmdDatei);
        EXPECT_TRUE(run.messages.empty());
        Repeated* const chooser = ChooseOnScreen([&] { return file; });
        {
            const SmallDisk full(64);
            Press(dialog.cmdDatei);
        }
        EXPECT_EQ(run.messages, Texts{L"Notizen sichern|16|Die Datei " + ShownFileName(FileName(file)) +
                                      L" konnte nicht geschrieben werden.\r\n\r\n" +
                                      ReasonText({KeepFailure::DiskFull}, L"die Datei")});
        EXPECT_EQ(dialog.State(), DialogState::Waiting);
        Press(dialog.cmdDatei);
        chooser->End();
    }));
    const auto saved = ReadEmergencyBytes(Content(file));
    ASSERT_TRUE(saved && saved->notes.size() == 2);
    EXPECT_EQ(saved->notes[0].text, L"neu");
    run.keeping.KeepAtOnce({});
    EXPECT_FALSE(IsFileLeft());
    run.keeping.KeepAtOnce({L"/noch nicht importiert.kvr"});
    ASSERT_TRUE(IsFileLeft());
    EXPECT_TRUE(ReadEmergencyBytes(Content(EmergencyFiles(EmergencyFolders())[0])) ==
                UnsavedImage{.files = {L"/noch nicht importiert.kvr"}});

    EXPECT_TRUE(mayQuit([&](frmUnsaved& dialog) {
        Unblock();
        Press(dialog.cmdOK);
    }));
    EXPECT_TRUE(run.store.AllKept());
}
