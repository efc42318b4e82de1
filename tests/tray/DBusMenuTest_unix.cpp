// The menu of an icon, read and used over a session bus.

// Last, because Xlib's macros would spoil the others.
#include "tests/tray/BusFixture_unix.h"

namespace {

class StatusNotifierMenu : public BusFixture {
  protected:
    // Writes down what is chosen from it.
    const TrayMenu menu_ = {[this] { return entries_; },
                            [this](int id) { log_ += L"run" + std::to_wstring(id) + L' '; }};
    std::vector<TrayMenuEntry> entries_ = {
        {.id = 1, .caption = L"Neue_Notiz"},
        {.id = 2, .kind = TrayMenuEntry::Separator, .caption = {}},
        {.id = 3, .caption = L"Löschen", .enabled = false},
        {.id = 4,
         .kind = TrayMenuEntry::Submenu,
         .caption = L"Austausch",
         .submenu = {{.id = 5, .kind = TrayMenuEntry::Check, .caption = L"Beim Start", .checked = true}}},
    };
};

TEST_F(StatusNotifierMenu, TheMenuIsReadAsItIs) {
    TestDesktop desktop(bus_, true);
    AddIcon(L"A", menu_);
    const std::string item = OnlyItem(desktop);
    EXPECT_EQ(Printed(desktop.Property(item, "Menu")), "'/MenuBar'");
    for (const auto& [name, value] :
         {std::pair("Version", "3"), {"TextDirection", "'ltr'"}, {"Status", "'normal'"}})
        EXPECT_EQ(Printed(desktop.Property(item, name, "/MenuBar", "com.canonical.dbusmenu")), value) << name;
    const char *nothing[] = {nullptr}, *label[] = {"label", nullptr};
    const auto layout = [&](int id, int depth, const char** names) {
        return Printed(desktop.Menu(item, "GetLayout", g_variant_new("(ii^as)", id, depth, names)));
    };
    const std::string submenu =
        "(4, {'children-display': <'submenu'>, 'label': <'Austausch'>}, [<(5, {'label': <'Beim Start'>, "
        "'toggle-type': <'checkmark'>, 'toggle-state': <1>}, @av [])>])";
    EXPECT_EQ(layout(0, -1, nothing),
              "(1, (0, {'children-display': <'submenu'>}, [<(1, {'label': <'Neue__Notiz'>}, @av [])>, "
              "<(2, {'type': <'separator'>}, @av [])>, <(3, {'label': <'Löschen'>, 'enabled': <false>}, @av "
              "[])>, <" +
                  submenu + ">]))");
    EXPECT_EQ(layout(4, -1, nothing), "(1, " + submenu + ")");
    EXPECT_EQ(layout(4, 1, label),
              "(1, (4, {'label': <'Austausch'>}, [<(5, {'label': <'Beim Start'>}, @av [])>]))");
    EXPECT_EQ(layout(4, 0, label), "(1, (4, {'label': <'Austausch'>}, []))");
    EXPECT_EQ(layout(6, -1, nothing), "error");

    const auto properties = [&](GVariant* ids, const char** names) {
        return Printed(desktop.Menu(item, "GetGroupProperties", g_variant_new("(@ai^as)", ids, names)));
    };
    EXPECT_EQ(properties(g_variant_new_parsed("[3, 5, 6]"), label),
              "([(3, {'label': <'Löschen'>}), (5, {'label': <'Beim Start'>})],)");
    EXPECT_EQ(properties(g_variant_new_parsed("@ai []"), label),
              "([(0, {}), (1, {'label': <'Neue__Notiz'>}), (2, {}), (3, {'label': <'Löschen'>}), "
              "(4, {'label': <'Austausch'>}), (5, {'label': <'Beim Start'>})],)");
    const auto property = [&](int id, const char* name) {
        return Printed(desktop.Menu(item, "GetProperty", g_variant_new("(is)", id, name)));
    };
    EXPECT_EQ(property(3, "enabled"), "(<false>,)");
    EXPECT_EQ(property(1, "enabled"), "(<true>,)");
    EXPECT_EQ(property(1, "toggle-state"), "error");
    EXPECT_EQ(property(6, "label"), "error");
}

TEST_F(StatusNotifierMenu, OnlyWhatCanBeChosenIsRun) {
    TestDesktop desktop(bus_, true);
    Notification& icon = AddIcon(L"A", menu_);
    const std::string item = OnlyItem(desktop);
    EXPECT_EQ(
        Printed(desktop.Menu(item, "EventGroup",
                             g_variant_new_parsed("([(1, 'clicked', <0>, @u 0), (1, 'hovered', <0>, 0), "
                                                  "(2, 'clicked', <0>, 0), (3, 'clicked', <0>, 0), "
                                                  "(4, 'clicked', <0>, 0), (9, 'clicked', <0>, 0)],)"))),
        "([9],)");
    RunEvents();
    EXPECT_EQ(log_, L"run1 ");

    icon.Menu.Run = [this](int) { icons_.clear(); };
    EXPECT_TRUE(desktop.Menu(item, "Event", g_variant_new_parsed("(1, 'clicked', <0>, @u 0)")));
    EXPECT_TRUE(OnlyOnTheBus(desktop, 0));
}

TEST_F(StatusNotifierMenu, AMenuThatHasChangedIsReadAgain) {
    TestDesktop desktop(bus_, true);
    AddIcon(L"A", menu_);
    const std::string item = OnlyItem(desktop);
    const auto aboutToShow = [&] {
        return Printed(desktop.Menu(item, "AboutToShow", g_variant_new("(i)", 0)));
    };
    const auto read = [&] { desktop.Menu(item, "GetLayout", g_variant_new_parsed("(0, -1, @as [])")); };

    // Nobody has read it yet.
    Notification::MenusChanged();
    RunEvents();
    EXPECT_EQ(desktop.TakeSignals(), "");
    read();
    EXPECT_EQ(aboutToShow(), "(false,)");
    Notification::MenusChanged();
    RunEvents();
    EXPECT_EQ(desktop.TakeSignals(), "");

    entries_[2].enabled = true;
    EXPECT_EQ(aboutToShow(), "(true,)");
    EXPECT_EQ(aboutToShow(), "(false,)");
    EXPECT_EQ(desktop.TakeSignals(), "LayoutUpdated ");

    entries_[2].enabled = false;
    EXPECT_TRUE(desktop.Menu(item, "Event", g_variant_new_parsed("(0, 'opened', <0>, @u 0)")));
    EXPECT_EQ(desktop.TakeSignals(), "LayoutUpdated ");

    // What the program itself tells reaches the host before the menu opens, however often it is told.
    entries_[3].submenu[0].checked = false;
    for (int i = 0; i < 3; ++i) Notification::MenusChanged();
    RunEvents();
    EXPECT_EQ(desktop.TakeSignals(), "LayoutUpdated ");
    entries_.pop_back();
    read();
    EXPECT_EQ(desktop.TakeSignals(), "LayoutUpdated ");  // for the other readers
    entries_.erase(entries_.begin());
    EXPECT_EQ(Printed(desktop.Menu(item, "AboutToShowGroup", g_variant_new_parsed("([0, 1],)"))),
              "([0], [1])");

    // A menu without entries has been read, too.
    const std::vector<TrayMenuEntry> before = std::exchange(entries_, {});
    for (const auto& entries : {entries_, before}) {
        desktop.TakeSignals();
        entries_ = entries;
        Notification::MenusChanged();
        RunEvents();
        EXPECT_EQ(desktop.TakeSignals(), "LayoutUpdated ");
    }
}

}  // namespace
