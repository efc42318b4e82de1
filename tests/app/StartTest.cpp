// The menu as it opens on the screen, and what its commands do.
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <filesystem>
#include <map>

#include "app/NoteServices.h"
#include "app/frmStart.h"
#include "base/DataFolder.h"
#include "base/basMessage.h"
#include "base/basText.h"
#include "notes/frmNote.h"
#include "tests/support/Events.h"

namespace {

using enum MenuItem;

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

    frmNote& AddNote(const wchar_t* text) {
        NotePtr note = Store().CreateNote();
        note->Text(text);
        return Store().AddNote(std::move(note));
    }

    NoteStore& Store() { return services_.Store(); }

    // Opens the menu and does something with it while it is open.
    template <class Visit>
    void WithMenu(frmNote* note, Visit visit, std::optional<wxPoint> at = std::nullopt) {
        visit_ = visit;
        visited_ = false;
        g_timeout_add(
            100,
            [](gpointer data) -> gboolean {
                auto& self = *static_cast<StartTest*>(data);
                GtkMenuShell* menu = OpenMenu();
                self.visited_ = menu != nullptr;
                if (menu) self.visit_(menu);
                return G_SOURCE_REMOVE;
            },
            this);
        start_->ShowPopupMenu(note, at);
        EXPECT_TRUE(visited_);
        EXPECT_FALSE(OpenMenu());
    }

    static GtkMenuShell* OpenMenu() {
        GtkMenuShell* open = nullptr;
        GList* windows = gtk_window_list_toplevels();
        for (GList* window = windows; window; window = window->next) {
            if (!gtk_widget_get_visible(GTK_WIDGET(window->data))) continue;
            GtkWidget* child = gtk_bin_get_child(GTK_BIN(window->data));
            if (child && GTK_IS_MENU(child)) open = GTK_MENU_SHELL(child);
        }
        g_list_free(windows);
        return open;
    }

    static std::vector<GtkMenuItem*> Items(GtkMenuShell* menu) {
        std::vector<GtkMenuItem*> items;
        GList* children = gtk_container_get_children(GTK_CONTAINER(menu));
        for (GList* child = children; child; child = child->next) {
            items.push_back(GTK_MENU_ITEM(child->data));
        }
        g_list_free(children);
        return items;
    }

    static GtkMenuItem* Item(GtkMenuShell* menu, const std::wstring& caption) {
        for (GtkMenuItem* item : Items(menu)) {
            const char* label = gtk_menu_item_get_label(item);
            if (label && FromUtf8(label) == caption) return item;
        }
        return nullptr;
    }

    static void Choose(GtkMenuShell* menu, const std::wstring& caption) {
        GtkMenuItem* item = Item(menu, caption);
        ASSERT_TRUE(item) << ToUtf8(caption);
        gtk_menu_shell_activate_item(menu, GTK_WIDGET(item), TRUE);
    }

    NoteServices services_;
    frmStart* start_;
    int quits_ = 0;
    std::function<void(GtkMenuShell*)> visit_;
    bool visited_ = false;
};

TEST_F(StartTest, MenuOpensWithoutAnyWindow) {
    WithMenu(nullptr, [](GtkMenuShell* menu) {
        EXPECT_TRUE(Item(menu, L"Neue Notiz..."));
        EXPECT_FALSE(Item(menu, L"Notiz löschen"));
        EXPECT_FALSE(Item(menu, L"Drucken..."));
        EXPECT_FALSE(gtk_widget_get_sensitive(GTK_WIDGET(Item(menu, L"Alle Notizen minimieren"))));
        GtkMenuItem* austausch = Item(menu, L"Notiz-Austausch");
        ASSERT_TRUE(austausch);
        EXPECT_TRUE(gtk_menu_item_get_submenu(austausch));
        gtk_menu_shell_deactivate(menu);
    });
    EXPECT_EQ(start_->PopupNote(), nullptr);
}

TEST_F(StartTest, PictureIsFirstAndCannotBeChosen) {
    WithMenu(nullptr, [](GtkMenuShell* menu) {
        GtkWidget* picture = GTK_WIDGET(Items(menu).at(0));
        GtkWidget* image = gtk_bin_get_child(GTK_BIN(picture));
        ASSERT_TRUE(GTK_IS_IMAGE(image));
        EXPECT_EQ(gtk_widget_get_allocated_height(image), kMenuPictureHeight);
        EXPECT_FALSE(gtk_widget_get_sensitive(picture));
        gtk_menu_shell_deactivate(menu);
    });
}

TEST_F(StartTest, NoteItemsActOnTheirNote) {
    frmNote& first = AddNote(L"eins");
    frmNote& second = AddNote(L"zwei");
    second.Foreground(true);
    WithMenu(&second, [](GtkMenuShell* menu) {
        auto* check = GTK_CHECK_MENU_ITEM(Item(menu, L"Immer im Vordergrund"));
        EXPECT_TRUE(gtk_check_menu_item_get_active(check));
        Choose(menu, L"Immer im Vordergrund");
    });
    EXPECT_FALSE(second.Foreground());
    WithMenu(&first, [](GtkMenuShell* menu) { Choose(menu, L"Notiz löschen"); });
    EXPECT_EQ(Store().CountNotes(), 1u);
    EXPECT_EQ(Store().Notes()[0].get(), &second);
    EXPECT_EQ(start_->PopupNote(), nullptr);
    EXPECT_FALSE(std::filesystem::is_empty(DataFolder() / "papierkorb"));
}

TEST_F(StartTest, NoteDeletedUnderTheOpenMenuIsNothing) {
    frmNote& note = AddNote(L"eins");
    for (const wchar_t* command : {L"Notiz löschen", L"Immer im Vordergrund", L"Notiz bearbeiten..."}) {
        frmNote& doomed = AddNote(L"zwei");
        WithMenu(&doomed, [&](GtkMenuShell* menu) {
            Store().DeleteNote(doomed);
            Choose(menu, command);
        });
        EXPECT_EQ(Store().CountNotes(), 1u);
        EXPECT_EQ(start_->PopupNote(), nullptr);
    }
    EXPECT_FALSE(note.Foreground());
}

TEST_F(StartTest, MinimizesAllAndTakesItBack) {
    frmNote& note = AddNote(L"eins");
    WithMenu(nullptr, [](GtkMenuShell* menu) { Choose(menu, L"Alle Notizen minimieren"); });
    EXPECT_TRUE(note.Minimized());
    EXPECT_EQ(start_->Situation().minimizedByCommand, 1u);
    WithMenu(&note, [](GtkMenuShell* menu) { Choose(menu, L"\"Alle Notizen minimieren\" rückgängig"); });
    EXPECT_FALSE(note.Minimized());
}

TEST_F(StartTest, IconEventsOpenTheMenuOnceEach) {
    int opened = 0;
    for (const auto& event : {std::function<void()>([this] { start_->notIcon.Events.MouseUp(2); }),
                              std::function<void()>([this] { start_->notIcon.Events.ContextMenu(); })}) {
        g_timeout_add(
            100,
            [](gpointer count) -> gboolean {
                if (GtkMenuShell* menu = OpenMenu()) {
                    ++*static_cast<int*>(count);
                    gtk_menu_shell_deactivate(menu);
                }
                return G_SOURCE_REMOVE;
            },
            &opened);
        event();
    }
    start_->notIcon.Events.MouseUp(1);
    EXPECT_FALSE(OpenMenu());
    EXPECT_EQ(opened, 2);
}

TEST_F(StartTest, ForTheKeyboardItOpensAtTheNoteWithItsFirstItemChosen) {
    frmNote& note = AddNote(L"eins");
    WithMenu(
        &note,
        [](GtkMenuShell* menu) {
            GtkWidget* const window = gtk_widget_get_toplevel(GTK_WIDGET(menu));
            int x = 0, y = 0;
            gdk_window_get_origin(gtk_widget_get_window(window), &x, &y);
            EXPECT_EQ(std::pair(x, y), std::pair(200, 150));
            EXPECT_EQ(gtk_menu_shell_get_selected_item(menu), GTK_WIDGET(Item(menu, L"Neue Notiz...")));
            gtk_menu_shell_deactivate(menu);
        },
        wxPoint(200, 150));
}

TEST_F(StartTest, ASecondMenuDoesNotOpenOverTheFirst) {
    frmNote& note = AddNote(L"eins");
    WithMenu(&note, [&](GtkMenuShell* menu) {
        start_->ShowPopupMenu(nullptr);  // returns at once
        EXPECT_EQ(start_->PopupNote(), &note);
        gtk_menu_shell_deactivate(menu);
    });
}

TEST_F(StartTest, QuittingClosesTheMenuAndRunsNothing) {
    frmNote& note = AddNote(L"eins");
    WithMenu(&note, [&](GtkMenuShell*) { EndAllWaits(); });
    ResetWaits();
    EXPECT_EQ(Store().CountNotes(), 1u);
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
    EXPECT_TRUE(choose(start_->notIcon, L"Alle Notizen minimieren"));
    ASSERT_TRUE(second.Minimized());
    EXPECT_TRUE(choose(*second.TrayIcon(), L"Immer im Vordergrund"));
    EXPECT_TRUE(second.Foreground());
    // Not while the program's own menu is open for another note.
    WithMenu(Store().Notes()[0].get(), [&](GtkMenuShell* menu) {
        EXPECT_TRUE(choose(*second.TrayIcon(), L"Notiz löschen"));
        gtk_menu_shell_deactivate(menu);
    });
    EXPECT_EQ(Store().CountNotes(), 2u);
    EXPECT_TRUE(choose(*second.TrayIcon(), L"Notiz löschen"));
    EXPECT_EQ(Store().CountNotes(), 1u);
}

TEST_F(StartTest, EndIsAskedForOnce) {
    WithMenu(nullptr, [](GtkMenuShell* menu) { Choose(menu, L"Beenden"); });
    EXPECT_EQ(quits_, 1);
}

TEST_F(StartTest, BringingToTheFrontKeepsTheFlags) {
    frmNote& normal = AddNote(L"eins");
    frmNote& top = AddNote(L"zwei");
    top.Foreground(true);
    start_->notIcon.Events.MouseUp(1);
    RunEvents();
    EXPECT_FALSE(normal.Foreground());
    EXPECT_TRUE(top.Foreground());
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

}  // namespace
