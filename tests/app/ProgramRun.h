#pragma once
// A run of the whole program within a test, in which something happens while it waits: from its start by way
// of what its user does to its end, with what has to be on the disk then.

#include <gtest/gtest.h>
#include <wx/button.h>

#include <fstream>
#include <set>

#include "app/EmergencyFile.h"
#include "app/Startup.h"
#include "app/frmInfo.h"
#include "app/frmSplash.h"
#include "app/frmStart.h"
#include "app/frmUnsaved.h"
#include "base/DataFolder.h"
#include "base/FileName.h"
#include "exchange/ImportFile.h"
#include "net/frmFlood.h"
#include "notes/frmFind.h"
#include "registry/RegistryCalls.h"
#include "registry/clsRegistry.h"
#include "tests/addressbook/Entries.h"
#include "tests/app/MenuOnScreen.h"
#include "tests/app/OtherCopy.h"
#include "tests/exchange/FileDialogOnScreen.h"
#include "tests/exchange/SampleNotes.h"
#include "tests/mail/MailProgram.h"
#include "tests/net/RawPeer.h"
#include "tests/support/Dialogs.h"
#include "tests/support/Events.h"

namespace fs = std::filesystem;
using Texts = std::multiset<std::wstring>;

inline const wchar_t* const kFirst = L"eins";  // the note that something is done with, or that goes meanwhile
inline const wchar_t* const kRare = L"zwei Ω";  // asked about before it leaves the program
inline const wchar_t* const kWritten = L"geschrieben";

inline fs::path TestFile(const char* name) { return SharedDataFolder() / name; }

// As the registry gives it back.
inline std::wstring Stored(const std::wstring& text) {
    return RegistryCalls::FromCodePage(RegistryCalls::ToCodePage(text));
}

inline Texts TextsIn(const fs::path& file) {
    Texts texts;
    for (const Note& note : ReadNotesOf(file, kMostRecords, [](std::size_t) { return true; }).notes)
        texts.insert(note.text);
    return texts;
}

// What is on the disk.
struct Kept {
    Texts notes = {}, bin = {}, emergency = {}, addresses = {};
    std::size_t exported = 0;

    static Kept Now() {
        Kept kept;
        const StoredImage image = ReadStoredImage();
        for (const StoredNote& each : image.notes) kept.notes.insert(each.note.text);
        for (const auto& entry : image.entries)
            kept.addresses.insert(entry.PCName() + L" " + entry.Comment());
        std::error_code none;
        for (const auto& file : fs::directory_iterator(DataFolder() / "papierkorb", none))
            kept.bin.merge(TextsIn(file.path()));
        for (const fs::path& file : EmergencyFiles(EmergencyFolders())) kept.emergency.merge(TextsIn(file));
        kept.exported = TextsIn(TestFile("hinaus.kvr")).size();
        return kept;
    }
};

inline void ExpectSame(const Kept& kept, const Kept& expected) {
    EXPECT_EQ(kept.notes, expected.notes);
    EXPECT_EQ(kept.bin, expected.bin);
    EXPECT_EQ(kept.emergency, expected.emergency);
    EXPECT_EQ(kept.addresses, expected.addresses);
    EXPECT_EQ(kept.exported, expected.exported);
}

class ProgramRun;

struct Waiting {
    std::function<void(ProgramRun&)> open;   // what the user does first; may return only when all is over
    std::function<bool(ProgramRun&)> waits;  // it has come so far; else goes a step on the way there
    // What it comes to when the program does not end meanwhile.
    const wchar_t* written = nullptr;  // a text that becomes a new note, or the first one where it is edited
    bool edited = false, deleted = false, exported = false;
    bool binFails = false;  // for what is written
    Texts notes = {}, addresses = {L"Büro "};
    std::function<bool(ProgramRun&)> over = {};  // what is no window is over; else goes a step
};

struct Happening {
    const char* name;
    std::function<void(ProgramRun&)> happens;
    Texts notes = {};
    bool deletes = false, ends = false;
};

class ProgramRun {
  public:
    ProgramRun(const Waiting& waiting, const Happening& happening)
        : waiting_(waiting), happening_(happening) {
        Registry().DeleteKey(kSettingsKey);
        fs::remove_all(DataFolder() / "papierkorb");
        for (const fs::path& file : EmergencyFiles(EmergencyFolders())) fs::remove(file);
        fs::remove(TestFile("hinaus.kvr"));
        for (const auto& [name, text] : {std::pair("herein.kvr", L"eingelesen"), {"kopie.kvr", L"übergeben"}})
            std::ofstream(TestFile(name), std::ios::binary) << FileBytes({{.Text = text}});
        const Note notes[] = {{.text = kFirst}, {.text = kRare}};
        WriteStoredImage(false, {&notes[0], &notes[1]}, {Entry(L"Büro", L"127.0.0.1")});
    }
    ~ProgramRun() {
        ticks_->End();
        ResetWaits();
        // As in the process they go before the program. One whose showing is still under way would count as
        // open in the next run.
        EXPECT_TRUE(RunUntil([] { return wxPendingDelete.IsEmpty(); }));
        program_.reset();
        EmptyAddressBook();
        Registry().DeleteKey(kSettingsKey);
    }

    void Go() {
        wxTimer tooLong;
        tooLong.Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
            ADD_FAILURE() << "waits for what does not come";
            program_->EndAtOnce();
        });
        tooLong.StartOnce(60'000);
        program_->Reside();
        EXPECT_TRUE(returned_);
        EXPECT_FALSE(MenuOnScreen::Find());
        EXPECT_FALSE(FileDialogOnScreen::Find());
        wxTheApp->ProcessPendingEvents();
        // Dialogs that nobody waits for go with the process.
        for (wxWindow* window : wxWindowList(wxTopLevelWindows)) {
            if (dynamic_cast<frmInfo*>(window) || dynamic_cast<frmFlood*>(window) ||
                dynamic_cast<frmFind*>(window))
                window->Destroy();
            EXPECT_TRUE(wxPendingDelete.Member(window) || !dynamic_cast<DialogWindow*>(window));
        }
        ExpectSame(diedWith_ ? *diedWith_ : Kept::Now(), Expected());
    }

    Program& TheProgram() { return *program_; }
    NoteStore& Store() { return program_->Store(); }
    frmStart& Start() { return *start_; }
    void Choose(MenuItem item) { start_->RunCommand(item); }
    void HandOver(const fs::path& file) { receive_({L"", {FileName(file)}}); }
    void HandOverCommand(const Command& command) { receive_(command); }
    void DisplayDies() {
        program_->DisplayHasDied();
        diedWith_ = Kept::Now();
        program_->EndAtOnce();  // as the process, which would be gone by now, cannot do here
    }

    // Does something that may wait, outside of what is being done.
    void Later(std::function<void()> act) {
        ++pending_;
        After(std::chrono::milliseconds(1), [this, running = std::weak_ptr(running_), act = std::move(act)] {
            if (running.expired()) return;
            --pending_;
            act();
        });
    }
    template <class Dialog>
    void LaterPress(wxButton* Dialog::*button) {
        Later([button] {
            if (Dialog* dialog = OpenDialog<Dialog>()) Press(dialog->*button);
        });
    }

    // Answers what is open as a user does who wants it: yes, until it is over. False when there is nothing.
    bool GoOn() {
        if (const auto chooser = FileDialogOnScreen::Find()) {
            chooser->Cancel();
        } else if (const auto menu = MenuOnScreen::Find()) {
            const auto item = (*menu)[L"Notiz löschen"];
            if (item.caption.empty())
                menu->close();
            else
                item.choose();
        } else if (OpenDialog<DialogWindow>()) {
            Later([] { Confirm(OpenDialog<DialogWindow>()); });
        } else {
            return false;
        }
        return true;
    }

    // Whether so many lines have come.
    bool Heard(int lines) {
        lines_ += peer->Line(std::chrono::milliseconds(0)) != "<nothing>";
        return lines_ >= lines;
    }

    const std::uint16_t port = FreePort();
    std::optional<RawConnection> peer;

  private:
    static void Confirm(DialogWindow* dialog) {
        if (!dialog) return;
        wxWindow* const ok = dialog->FindWindow(wxID_OK);
        // Where OK tries again, or shows a note.
        const bool stays = dynamic_cast<frmUnsaved*>(dialog) || dynamic_cast<frmFind*>(dialog);
        if (ok && ok->IsShown() && ok->IsEnabled() && !stays)
            Press(ok);
        else
            dialog->Close();
    }

    void Tick() {
        if (pending_ > 0 || IsQuitting()) return;
        if (!start_) return LookForStart();
        if (!waits_) {
            waits_ = waiting_.waits(*this);
            if (!waits_) return;
            happening_.happens(*this);
            EXPECT_EQ(IsQuitting(), Ends());
        } else if (!GoOn() && (!waiting_.over || waiting_.over(*this)) && returned_) {
            EXPECT_TRUE(Store().AllKept());
            Choose(MenuItem::mnuNotizEnde);
            EXPECT_TRUE(IsQuitting());
        }
    }

    void LookForStart() {
        for (wxWindow* window : wxTopLevelWindows) {
            if (wxPendingDelete.Member(window)) continue;
            wxKeyEvent key(wxEVT_KEY_DOWN);
            if (dynamic_cast<frmSplash*>(window)) window->ProcessWindowEvent(key);
            if (wxTheApp->IsMainLoopRunning() && !start_) start_ = dynamic_cast<frmStart*>(window);
        }
        if (!start_) return;
        Note rare = Store().Notes()[1]->Content();
        rare.text = kRare;  // which the registry of Windows does not give back
        Store().Notes()[1]->Content(rare);
        Store().SaveNotes();
        Later([this] {
            waiting_.open(*this);
            returned_ = true;
        });
    }

    // The question about unsaved work is asked already, and the program stays.
    bool Ends() const {
        return happening_.ends && !(waiting_.binFails && happening_.name == std::string("quit"));
    }

    Kept Expected() const {
        Kept kept{.notes = {kFirst, Stored(kRare)}, .addresses = {L"Büro "}};
        const auto remove = [&] {
            if (kept.notes.erase(kFirst)) kept.bin.insert(kFirst);
        };
        if (happening_.deletes) remove();
        kept.notes.insert(happening_.notes.begin(), happening_.notes.end());
        if (Ends()) {
            if (!waiting_.written) return kept;
            if (waiting_.binFails) kept.emergency = {kFirst, kRare};
            (waiting_.binFails ? kept.emergency : kept.bin).insert(kWritten);
            return kept;
        }
        kept.exported = waiting_.exported && !happening_.deletes ? 2 : 0;
        kept.addresses = waiting_.addresses;
        if (waiting_.deleted) remove();
        if (waiting_.written) {
            const bool becomesNote = !waiting_.edited || kept.notes.erase(kFirst);
            (becomesNote ? kept.notes : kept.bin).insert(kWritten);
        }
        kept.notes.insert(waiting_.notes.begin(), waiting_.notes.end());
        return kept;
    }

    const Waiting& waiting_;
    const Happening& happening_;
    const MailProgram mail_;
    const RawServer silent_{[](RawConnection& other) { other.Rest(std::chrono::seconds(60)); }};
    RunningCopy::Receive receive_;
    std::shared_ptr<bool> running_ = std::make_shared<bool>();
    std::optional<Program> program_{std::in_place, std::make_unique<RunningCopyInTest>(receive_),
                                    NetworkAccess::Options{port, silent_.Port(), std::chrono::seconds(60)}};
    Repeated* ticks_ = Repeated::Every(std::chrono::milliseconds(10), [this] { return Tick(), false; });
    frmStart* start_ = nullptr;
    std::optional<Kept> diedWith_;
    int pending_ = 0, lines_ = 0;
    bool waits_ = false, returned_ = false;
};
