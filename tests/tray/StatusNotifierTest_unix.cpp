// Icons on a session bus, before a host that the test plays.
#include <sys/stat.h>
#include <wx/image.h>
#include <wx/uiaction.h>

#include <array>

#include "tray/SessionBus_unix.h"

// Last, because Xlib's macros would spoil the others.
#include "tests/tray/BusFixture_unix.h"

namespace {

using std::chrono::milliseconds;

class StatusNotifier : public BusFixture {
  protected:
    // Whether the next activation is the second one of a double click, however long after the first it comes.
    static void DoubleClick(bool follows) {
        g_object_set(gtk_settings_get_default(), "gtk-double-click-time", follows ? G_MAXINT : 0, nullptr);
    }

    bool OnlyInTheStrip(int count) {
        return RunUntil([&] { return IconsInStrip() == count && Embedded().empty(); });
    }
};

TEST_F(StatusNotifier, AnIconHasTheseProperties) {
    TestDesktop desktop(bus_, true);
    AddIcon(L"Käse & <b>Brot</b>");
    const std::string item = OnlyItem(desktop);
    EXPECT_TRUE(item.starts_with("org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-")) << item;
    const std::pair<const char*, const char*> table[] = {
        {"Category", "'ApplicationStatus'"},
        {"Id", "'kivora'"},
        {"Status", "'Active'"},
        {"WindowId", "0"},
        {"Title", "'Käse & <b>Brot</b>'"},
        {"IconName", "''"},
        {"OverlayIconPixmap", "[]"},
        {"ToolTip", "('', [], 'Käse & <b>Brot</b>', '')"},
        {"ItemIsMenu", "false"},
        {"Menu", "'/NO_DBUSMENU'"},
    };
    for (const auto& [name, value] : table) EXPECT_EQ(Printed(desktop.Property(item, name)), value) << name;
}

TEST_F(StatusNotifier, ThePictureArrivesInAllSizesPixelByPixel) {
    TestDesktop desktop(bus_, true);
    AddIcon(L"A");
    const Variant pixmaps = desktop.Property(OnlyItem(desktop), "IconPixmap");
    ASSERT_TRUE(pixmaps);
    ASSERT_STREQ(g_variant_get_type_string(pixmaps.get()), "a(iiay)");
    std::vector<int> sizes;
    for (std::size_t i = 0; i < g_variant_n_children(pixmaps.get()); ++i) {
        int width = 0, height = 0;
        GVariant* array = nullptr;
        g_variant_get_child(pixmaps.get(), i, "(ii@ay)", &width, &height, &array);
        const Variant owner(array);
        sizes.push_back(width);
        const wxImage image =
            ResourcePicture(kFirstNoteIcon).bitmap.GetBitmap(wxSize(width, height)).ConvertToImage();
        ASSERT_TRUE(image.HasAlpha());
        gsize length = 0;
        const auto* bytes = static_cast<const guint8*>(g_variant_get_fixed_array(array, &length, 1));
        ASSERT_EQ(length, static_cast<gsize>(width * height * 4));
        int visible = 0;
        for (int at = 0; at < width * height; ++at, bytes += 4) {
            const int x = at % width, y = at / width;
            const std::array<guint8, 4> pixel = {image.GetAlpha(x, y), image.GetRed(x, y),
                                                 image.GetGreen(x, y), image.GetBlue(x, y)};
            ASSERT_TRUE(std::equal(bytes, bytes + (pixel[0] ? 4 : 1), pixel.begin())) << x << ',' << y;
            visible += pixel[0] > 0;
        }
        EXPECT_GT(visible, width * height / 3);
    }
    EXPECT_EQ(sizes, (std::vector<int>{16, 22, 24, 32, 48, 64}));
}

TEST_F(StatusNotifier, ChangesAreToldOnce) {
    TestDesktop desktop(bus_, true);
    Notification& icon = AddIcon(L"A");
    const std::string item = OnlyItem(desktop);
    const std::pair<std::function<void()>, const char*> table[] = {
        {[&] { icon.IconToolTip(L"B"); }, "NewTitle NewToolTip "},
        {[&] { icon.IconToolTip(L"B"); }, ""},
        {[&] { icon.SetIconFile(ResourcePicture(kLastNoteIcon)); }, "NewIcon "},
    };
    for (const auto& [change, signals] : table) {
        desktop.TakeSignals();
        change();
        desktop.Property(item, "Title");  // the answer comes after the signals
        EXPECT_EQ(desktop.TakeSignals(), signals);
    }
    EXPECT_EQ(Printed(desktop.Property(item, "Title")), "'B'");
}

TEST_F(StatusNotifier, WhatHostsTellArrivesAsMouseEvents) {
    TestDesktop desktop(bus_, true);
    Notification& icon = AddIcon(L"A");
    const std::string item = OnlyItem(desktop);
    const struct {
        std::vector<const char*> calls;  // null: a while without one
        const wchar_t* reported;
    } table[] = {
        {{"Activate"}, L"Adown1 Aup1 Adouble1 "},
        {{"Activate", "Activate"}, L"Adown1 Aup1 Adouble1 "},  // a double click is one activation
        {{"Activate", nullptr, "Activate"}, L"Adown1 Aup1 Adouble1 Adown1 Aup1 Adouble1 "},
        {{"SecondaryActivate"}, L"Adown1 Aup1 "},
        {{"ContextMenu"}, L"Amenu "},
    };
    for (const auto& row : table) {
        log_.clear();
        DoubleClick(false);
        for (const char* call : row.calls) {
            if (call) {
                EXPECT_TRUE(desktop.Tell(item, call));
            }
            DoubleClick(call != nullptr);
        }
        RunPosted();
        EXPECT_EQ(log_, row.reported);
    }

    icon.Enabled(false);
    icon.ShowIcon();
    ASSERT_TRUE(RunUntil([&] { return desktop.Items().size() == 1 && desktop.Items().front() != item; }));
    DoubleClick(false);
    log_.clear();
    EXPECT_TRUE(desktop.Tell(desktop.Items().front(), "Activate"));
    RunPosted();
    EXPECT_EQ(log_, L"");
}

TEST_F(StatusNotifier, TheMenuWaitsUntilTheButtonIsUp) {
    TestDesktop desktop(bus_, true);
    AddIcon(L"A");
    const std::string item = OnlyItem(desktop);
    wxUIActionSimulator pointer;
    pointer.MouseMove(frame_.ClientToScreen(wxPoint(20, 20)));  // the desktop would open a menu of its own
    pointer.MouseDown(wxMOUSE_BTN_RIGHT);
    EXPECT_TRUE(desktop.Tell(item, "ContextMenu"));
    RunEvents(milliseconds(150));
    EXPECT_EQ(log_, L"");
    pointer.MouseUp(wxMOUSE_BTN_RIGHT);
    EXPECT_TRUE(RunUntil([&] { return log_ == L"Amenu "; }));
}

TEST_F(StatusNotifier, AnIconMayDieOfItsOwnActivation) {
    TestDesktop desktop(bus_, true);
    AddIcon(L"A").Events.MouseUp = [this](int) { icons_.clear(); };
    const std::string item = OnlyItem(desktop);
    DoubleClick(false);
    EXPECT_TRUE(desktop.Tell(item, "Activate"));
    ASSERT_TRUE(OnlyOnTheBus(desktop, 0));
    EXPECT_EQ(log_, L"Adown1 ");
    EXPECT_FALSE(desktop.Tell(item, "Activate"));
}

TEST_F(StatusNotifier, AHostOnTheBusComesFirstThenATrayThenTheStrip) {
    AddIcon(L"A");
    AddIcon(L"B");
    ASSERT_TRUE(OnlyInTheStrip(2));
    auto watcher = std::make_unique<TestDesktop>(bus_, false);
    TestDesktop& desktop = *watcher;
    // A watcher without a host shows nothing.
    RunEvents(milliseconds(100));
    EXPECT_TRUE(OnlyInTheStrip(2));
    EXPECT_TRUE(desktop.Items().empty());
    desktop.SetHost(true, true);
    ASSERT_TRUE(OnlyOnTheBus(desktop, 2));

    TrayProcess tray;
    ASSERT_TRUE(RunUntil(HostExists));
    RunEvents(milliseconds(200));
    EXPECT_TRUE(OnlyOnTheBus(desktop, 2));
    desktop.SetHost(false);
    ASSERT_TRUE(RunUntil([&] { return Embedded().size() == 2 && !Strip() && desktop.Items().empty(); }));
    desktop.SetHost(true);
    ASSERT_TRUE(OnlyOnTheBus(desktop, 2));
    tray.End();
    RunEvents(milliseconds(200));
    EXPECT_TRUE(OnlyOnTheBus(desktop, 2));
    watcher.reset();
    EXPECT_TRUE(OnlyInTheStrip(2));
    watcher = std::make_unique<TestDesktop>(bus_, true);
    EXPECT_TRUE(OnlyOnTheBus(*watcher, 2));
}

TEST_F(StatusNotifier, WithoutItsBusTheProgramGoesOn) {
    auto bus = std::make_unique<TestBus>();
    auto desktop = std::make_unique<TestDesktop>(*bus, true);
    AddIcon(L"A");
    ASSERT_TRUE(OnlyOnTheBus(*desktop, 1));
    bus.reset();
    ASSERT_TRUE(OnlyInTheStrip(1));
    desktop.reset();
    AddIcon(L"B");
    ASSERT_TRUE(OnlyInTheStrip(2));
    // A new bus is found with the next icon.
    bus = std::make_unique<TestBus>();
    TestDesktop again(*bus, true);
    AddIcon(L"C");
    EXPECT_TRUE(OnlyOnTheBus(again, 3));
}

TEST_F(StatusNotifier, AnIconIsHeldBackWhileItIsAnnouncedAndMayGo) {
    TestDesktop desktop(bus_, true);
    desktop.silent = true;
    AddIcon(L"A");
    ASSERT_TRUE(RunUntil([&] { return desktop.Asked() || Strip(); }));
    EXPECT_FALSE(Strip()) << "it does not pass through the strip while the bus is asked";
    desktop.AnswerNow();
    ASSERT_TRUE(OnlyOnTheBus(desktop, 1));
    for (int i = 0; i < 30; ++i) {
        AddIcon(L"B");
        RunEvents(milliseconds(i / 3));
        icons_.pop_back();
    }
    EXPECT_TRUE(OnlyOnTheBus(desktop, 1));
    RunEvents(milliseconds(100));
    EXPECT_TRUE(OnlyOnTheBus(desktop, 1));
}

TEST_F(StatusNotifier, AWatcherThatIsNoHelpLeavesTheIconsToTheStrip) {
    {
        TestDesktop desktop(bus_, true);
        desktop.refuses = true;
        AddIcon(L"A");
        EXPECT_TRUE(RunUntil([] { return Strip() != nullptr; }));
        EXPECT_TRUE(desktop.Items().empty());
        // It is not there twice if the host looks for it after all.
        ASSERT_EQ(desktop.Refused().size(), 1u);
        EXPECT_FALSE(desktop.Tell(desktop.Refused().front(), "Activate"));
        icons_.clear();
        ASSERT_TRUE(RunUntil([] { return !Strip(); }));
    }
    TestDesktop desktop(bus_, true);
    desktop.silent = true;
    AddIcon(L"B");
    EXPECT_TRUE(RunUntil([] { return Strip() != nullptr; }));
}

TEST(SessionBus, IsFoundAndNeverStarted) {
    const char* own = g_getenv("DBUS_SESSION_BUS_ADDRESS");
    const std::string before = own ? own : "";
    const std::pair<const char*, const char*> table[] = {
        {"unix:path=/run/user/7/bus", "unix:path=/run/user/7/bus"},
        {"unix:abstract=/tmp/x,guid=00ff", "unix:abstract=/tmp/x,guid=00ff"},
        {"disabled:", ""},
        {"autolaunch:", ""},
        {"autolaunch:;unix:path=/a;unix:path=/b", "unix:path=/a;unix:path=/b"},
        {"nonsense", ""},
    };
    for (const auto& [named, found] : table) {
        setenv("DBUS_SESSION_BUS_ADDRESS", named, 1);
        EXPECT_EQ(SessionBusAddress(), found) << named;
    }
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    EXPECT_EQ(SessionBusAddress(), "");  // the test's runtime folder has none
    const std::string bus = std::string(g_getenv("XDG_RUNTIME_DIR")) + "/bus";
    EXPECT_EQ(mknod(bus.c_str(), S_IFSOCK | 0600, 0), 0);
    EXPECT_EQ(SessionBusAddress(), "unix:path=" + bus);
    unlink(bus.c_str());
    setenv("DBUS_SESSION_BUS_ADDRESS", before.empty() ? "disabled:" : before.c_str(), 1);
}

}  // namespace
