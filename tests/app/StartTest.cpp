// The menu as it opens on the screen, and what its commands do.
#include <wx/frame.h>
#include <wx/popupwin.h>
#include <wx/uiaction.h>

#include "app/CopyCommands.h"
#include "app/NoteServices.h"
#include "app/Receiving.h"
#include "app/frmStart.h"
#include "base/FileName.h"
#include "model/StoredImage.h"
#include "net/basNetworkAccess.h"
#include "notes/NoteWindow.h"
#include "notes/frmNote.h"
#include "notes/frmProperties.h"
#include "registry/clsRegistry.h"
#include "res/Resources.h"
#include "tests/app/MenuOnScreen.h"
#include "tests/support/Controls.h"
#include "tests/support/Dialogs.h"
#include "tests/support/Events.h"
#include "tests/support/Stacking.h"

namespace {

using namespace std::chrono_literals;

class StartTest : public testing::Test {
  protected:
    StartTest() : start_(new frmStart(services_.Store(), [this] { ++quits_; })) {
        services_.OpenMenu = [this](frmNote* note, std::optional<wxPoint> at) {
            start_->ShowPopupMenu(note, at);
        };
        services_.DescribeMenu = [this](const frmNote& note) { return start_->DescribeMenu(&note); };
        services_.RunMenu = [this](frmNote& note, int id) { start_->RunFromTrayMenu(&note, id); };
    }
    ~StartTest() override {
        services_.Store().UnloadAllNotes();
        services_.Store().SaveNotes();
        start_->Destroy();
        RunEvents();
    }

    frmNote& AddNote(const wchar_t* text) { return Store().AddNote({.text = text}); }

    NoteStore& Store() { return services_.Store(); }

    // Opens the menu and does something with it while it is open.
    void WithMenu(frmNote* note, std::function<void(const MenuOnScreen&)> visit,
                  std::optional<wxPoint> at = std::nullopt) {
        bool visited = false;
        WhenOpen([&](const MenuOnScreen& menu) {
            visited = true;
            visit(menu);
        });
        start_->ShowPopupMenu(note, at);
        EXPECT_TRUE(visited);
        EXPECT_FALSE(MenuOnScreen::Find());
    }

    // The note has the keyboard, as after a click on it.
    void Click(frmNote& note) {
        ASSERT_TRUE(RunUntil([&] { return RectOnScreen(note) == note.WindowRect(); }));
        wxUIActionSimulator mouse;
        mouse.MouseMove(note.WindowRect().GetPosition() + wxPoint(30, 25));
        mouse.MouseClick();
        ASSERT_TRUE(RunUntil([&] { return note.IsActive(); }));
    }

    static void WhenOpen(std::function<void(const MenuOnScreen&)> visit) {
        After(100ms, [visit = std::move(visit)] {
            const auto menu = MenuOnScreen::Find();
            if (menu) visit(*menu);
        });
    }

    NoteServices services_;
    frmStart* start_;
    int quits_ = 0;
};

TEST_F(StartTest, IconEventsOpenTheMenuOnceEachAndOnlyAClickRaisesTheNotes) {
    frmNote& note = AddNote(L"eins");
    auto* const other = new wxFrame(nullptr, wxID_ANY, L"Other");
    other->Show();
    ASSERT_TRUE(RunUntil([&] { return StandsAbove(*other, note); }));
    int opened = 0;
    for (const auto& event : {std::function<void()>([this] { start_->notIcon.Events.MouseUp(2); }),
                              std::function<void()>([this] { start_->notIcon.Events.ContextMenu(); })}) {
        WhenOpen([&](const MenuOnScreen& menu) {
            ++opened;
            menu.close();
        });
        event();
    }
    EXPECT_TRUE(StandsAbove(*other, note));
    start_->notIcon.Events.MouseUp(1);
    EXPECT_TRUE(RunUntil([&] { return StandsAbove(note, *other) && note.IsActive(); }));
    EXPECT_FALSE(MenuOnScreen::Find());
    EXPECT_EQ(opened, 2);
    other->Destroy();
}

TEST_F(StartTest, TheMenuOfTheIconSwitchesLoadingWithTheSession) {
    for (const bool on : {true, false}) {
        WithMenu(nullptr, [&](const MenuOnScreen& menu) {
            EXPECT_EQ(menu.items.size(), 1 + start_->DescribeMenu(nullptr).size());
            EXPECT_EQ(menu.pictureHeight, wxWindow::FromDIP(kMenuPictureHeight, nullptr));
            EXPECT_TRUE(menu[L"Neue Notiz..."].enabled);
            EXPECT_TRUE(menu.Has(L"Alle Notizen minimieren"));
            EXPECT_FALSE(menu[L"Alle Notizen minimieren"].enabled);
            EXPECT_TRUE(menu[L"Notiz-Austausch"].opensSubmenu);
            EXPECT_NE(menu[L"Beim Start von Windows laden"].checked, on);
            menu[L"Beim Start von Windows laden"].choose();
        });
        EXPECT_EQ(ReadStoredImage().autostart, on);
        const auto* const value = L"HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Run\\Kivora";
        EXPECT_EQ(AsText(Registry().GetValue(value, REG_TYPE_SZ)), on ? ProgramPath() : L"");
    }
}

TEST_F(StartTest, TheIconWarnsOfTrouble) {
    const std::pair<Trouble, int> rows[] = {{Trouble::None, kProgramIcon}, {Trouble::Unsaved, kTroubleIcon}};
    for (const auto& [trouble, picture] : rows) {
        start_->ShowState({trouble});
        EXPECT_TRUE(start_->notIcon.IconFile().bitmap.IsSameAs(ResourcePicture(picture).bitmap));
    }
}

TEST_F(StartTest, ADoubleClickOnTheIconBeginsANote) {
    bool begun = false;
    const WhenShown<frmProperties> user([&](frmProperties& dialog) {
        begun = true;
        dialog.Close();
    });
    start_->notIcon.Events.DblClick(2);
    ASSERT_FALSE(begun);
    start_->notIcon.Events.DblClick(1);
    EXPECT_TRUE(begun);
}

TEST_F(StartTest, AShortClickOpensASubmenu) {
    const wchar_t* const caption = L"Notiz-Austausch";
    Repeated* look = nullptr;
    bool opened = false;
    WhenOpen([&](const MenuOnScreen& menu) {
        menu[caption].click();
        look = Repeated::Every(10ms, [&, looks = 0]() mutable {
            if (opened) return false;  // the menu goes
            const auto open = MenuOnScreen::Find();
            opened = open && !open->Has(caption);
            if (open && (opened || ++looks == 1000)) open->close();
            return false;
        });
    });
    start_->ShowPopupMenu(nullptr);
    if (look) look->End();
    EXPECT_TRUE(opened);
}

// By keys alone: the menu opens at the note that has the keyboard, with its first item chosen, arrows and
// Enter choose in it, and the note has the keyboard again when nothing was chosen.
TEST_F(StartTest, KeysOpenTheMenuAndChooseInIt) {
    frmNote& note = AddNote(L"eins");
    Click(note);
    for (const bool choosing : {false, true}) {
        bool open = false;
        Repeated::Every(50ms, [&] {
            const auto menu = MenuOnScreen::Find();
            if (!menu || !(*menu)[L"Neue Notiz..."].isReadyForKeys) return false;
            open = menu->Has(L"Notiz löschen") && note.WindowRect().Contains(menu->place);
            if (choosing) wxUIActionSimulator().Char(WXK_UP);  // to the last entry
            wxUIActionSimulator().Char(choosing ? WXK_RETURN : WXK_ESCAPE);
            return true;
        });
        wxUIActionSimulator().Char(WXK_F10, wxMOD_SHIFT);
        ASSERT_TRUE(RunUntil([&] { return open && !MenuOnScreen::Find(); }));
        EXPECT_TRUE(RunUntil([&] { return choosing ? quits_ == 1 : note.IsActive(); }));
    }
}

TEST_F(StartTest, TheKeyboardGoesFromNoteToNote) {
    frmNote& first = AddNote(L"eins");
    frmNote& second = AddNote(L"zwei");
    frmNote& third = AddNote(L"drei");
    Click(second);
    const struct {
        int key, modifiers;
        frmNote& active;
    } rows[] = {
        {WXK_TAB, wxMOD_CONTROL, third},
        {WXK_TAB, wxMOD_CONTROL, first},
        {WXK_TAB, wxMOD_CONTROL | wxMOD_SHIFT, third},
        {WXK_F6, wxMOD_SHIFT, second},
        {WXK_F6, wxMOD_NONE, third},
        {WXK_F6, wxMOD_SHIFT, second},
    };
    for (const auto& row : rows) {
        TypeKey(row.key, row.modifiers);
        ASSERT_TRUE(RunUntil([&] { return row.active.IsActive(); }));
    }
    TypeKey(WXK_TAB, wxMOD_SHIFT);
    TypeKey(WXK_SPACE);  // minimizes it
    EXPECT_TRUE(RunUntil([&] { return second.Minimized() && third.IsActive(); }));
    start_->RunFromTrayMenu(&third, IdOf(MenuItem::mnuNotizLöschen));
    EXPECT_TRUE(RunUntil([&] { return first.IsActive(); }));
    Click(first);
    TypeKey('Z', wxMOD_CONTROL);
    EXPECT_TRUE(RunUntil([&] { return Store().Notes().back()->Text() == L"drei"; }));
}

TEST_F(StartTest, DialogsGiveTheKeyboardBackToTheirNote) {
    AddNote(L"eins");
    frmNote& note = AddNote(L"zwei");
    AddNote(L"drei");
    Click(note);
    const auto fromMenu = [&](MenuItem item) {
        return [this, item, &note] { start_->RunFromTrayMenu(&note, IdOf(item)); };
    };
    const std::pair<const char*, std::function<void()>> ways[] = {
        {"new", fromMenu(MenuItem::mnuNotizNeu)},
        {"edit", fromMenu(MenuItem::mnuNotizBearbeiten)},
        {"info", fromMenu(MenuItem::mnuNotizInfo)},
        {"edit by key", [] { wxUIActionSimulator().Char(WXK_RETURN); }},
        {"find by key", [] { wxUIActionSimulator().Char('F', wxMOD_CONTROL); }},
    };
    for (const auto& [name, open] : ways) {
        SCOPED_TRACE(name);
        bool active = false;
        Repeated::Every(50ms, [&active] {
            DialogWindow* const dialog = OpenDialog<DialogWindow>();
            active = dialog && dialog->IsActive();
            if (active) wxUIActionSimulator().Char(WXK_ESCAPE);
            return active;
        });
        open();
        EXPECT_TRUE(RunUntil([&] { return active && !OpenDialog<DialogWindow>() && note.IsActive(); }));
    }
}

// The same menu where the notification area shows it itself.
TEST_F(StartTest, IconsTellTheirMenuAndRunIt) {
    const auto choose = [](const Notification& icon, const wchar_t* caption) {
        for (const TrayMenuEntry& entry : icon.Menu.Describe()) {
            if (entry.caption != caption) continue;
            icon.Menu.Run(entry.id);
            return true;
        }
        return false;
    };
    AddNote(L"eins");
    frmNote& second = AddNote(L"zwei");
    EXPECT_FALSE(choose(start_->notIcon, L"Notiz löschen"));
    for (const bool back : {true, false}) {
        EXPECT_TRUE(choose(start_->notIcon, L"Alle Notizen minimieren"));
        ASSERT_TRUE(second.Minimized());
        if (!back) continue;
        EXPECT_TRUE(choose(start_->notIcon, L"\"Alle Notizen minimieren\" rückgängig"));
        EXPECT_FALSE(second.Minimized());
    }
    EXPECT_TRUE(choose(*second.TrayIcon(), L"Immer im Vordergrund"));
    EXPECT_TRUE(second.Foreground());
    // Not while the program's own menu is open for another note.
    frmNote& first = *Store().Notes()[0];
    WithMenu(&second, [&](const MenuOnScreen& menu) {
        EXPECT_TRUE(choose(*first.TrayIcon(), L"Notiz löschen"));
        start_->ShowPopupMenu(nullptr);  // returns at once
        EXPECT_EQ(start_->PopupNote(), &second);
        EXPECT_TRUE(menu[L"Immer im Vordergrund"].checked);
        menu[L"Immer im Vordergrund"].choose();
    });
    EXPECT_FALSE(second.Foreground());
    EXPECT_EQ(Store().CountNotes(), 2u);
    EXPECT_TRUE(choose(*second.TrayIcon(), L"Notiz löschen"));
    ASSERT_EQ(Store().CountNotes(), 1u);
    EXPECT_EQ(Store().Notes()[0].get(), &first);
    EXPECT_EQ(start_->PopupNote(), nullptr);
}

TEST_F(StartTest, TheCommandThatTogglesShowsNotesHoweverTheyWereMinimized) {
    NetworkAccess network(Store());
    Receiving receiving(network, [] {});
    EXPECT_EQ(CopyCommands(Store(), receiving, {}).CarryOut({L"--print", {}}).text,
              L"Es gibt keine Notizen.\n");
    frmNote& note = AddNote(L"eins");
    note.Minimized(true);
    CopyCommands(Store(), receiving, {}).CarryOut({L"--toggle", {}});
    EXPECT_FALSE(note.Minimized());
}

TEST_F(StartTest, ADialogKeepsTheKeyboardWhenAllComesToTheFront) {
    AddNote(L"eins");
    auto* dialog = new frmProperties(L"Neue Notiz");
    dialog->Show();
    dialog->Raise();
    ASSERT_TRUE(RunUntil([&] { return dialog->IsActive(); }));
    start_->notIcon.Events.MouseUp(1);
    RunEvents(std::chrono::milliseconds(200));
    EXPECT_TRUE(dialog->IsActive());
    dialog->Destroy();
}

TEST_F(StartTest, NothingIsSavedWhileTheProgramEnds) {
    AddNote(L"eins");
    EndAllWaits();
    Store().UnloadAllNotes();
    services_.SaveNotes();
    ResetWaits();
    NoteStore again(services_);
    again.LoadNotes();
    EXPECT_EQ(again.CountNotes(), 1u);
    again.UnloadAllNotes();
}

TEST_F(StartTest, TheHintForANewcomerGoesAtAClickAndWithTheFirstNote) {
    const auto hint = [this]() -> wxWindow* {
        for (wxWindow* const child : start_->GetChildren())
            if (dynamic_cast<wxPopupWindow*>(child) && child->IsShown()) return child;
        return nullptr;
    };
    for (const bool byClick : {true, false}) {
        SCOPED_TRACE(byClick);
        start_->GreetNewcomer();
        ASSERT_TRUE(RunUntil([&] { return hint() != nullptr; }));
        // In time it goes by itself, so there is no waiting for that.
        if (byClick) {
            bool clicked = false;
            hint()->Bind(wxEVT_LEFT_DOWN, [&](wxMouseEvent& event) {
                clicked = true;
                event.Skip();
            });
            wxUIActionSimulator mouse;
            const wxRect rect = hint()->GetScreenRect();
            mouse.MouseMove(rect.GetPosition() + rect.GetSize() / 2);
            mouse.MouseClick();
            EXPECT_TRUE(RunUntil([&] { return clicked; }));
        } else {
            AddNote(L"eins");
        }
        EXPECT_FALSE(hint());
    }
}

}  // namespace
