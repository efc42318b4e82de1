// Notes while screens go and come back, on a display server with several outputs.
#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>

#include "model/StoredImage.h"
#include "tests/app/Process.h"
#include "tests/support/Shell_unix.h"

namespace {

constexpr int kWidth = 240, kHeight = 150;

// Two screens of 800 x 600 side by side, with a window manager, that everything started from here on uses.
class TwoScreens {
  public:
    TwoScreens() : before_(std::getenv("DISPLAY")), folder_(std::getenv("XDG_RUNTIME_DIR")) {
        const std::filesystem::path server = "/usr/lib/xorg/Xorg";
        if (!std::filesystem::exists(server)) return;
        std::ofstream(folder_ + "/screens.conf")
            << "Section \"ServerFlags\"\n Option \"AutoAddDevices\" \"false\"\n"
               " Option \"AutoAddGPU\" \"false\"\nEndSection\n"
               "Section \"Device\"\n Identifier \"d\"\n Driver \"dummy\"\n VideoRam 64000\nEndSection\n"
               "Section \"Screen\"\n Identifier \"s\"\n Device \"d\"\n DefaultDepth 24\nEndSection\n";
        server_.emplace(server.string() + " -displayfd 3 -config " + folder_ + "/screens.conf -logfile " +
                        folder_ +
                        "/screens.log -noreset -nolisten tcp -novtswitch -sharevts >/dev/null 2>&1 3>" +
                        folder_ + "/number");
        std::string number;
        Eventually([&] { return !(number = ShellOutput("cat " + folder_ + "/number")).empty(); });
        if (number.empty()) return;
        setenv("DISPLAY", (":" + number).c_str(), 1);
        ShellOutput("xrandr --addmode DUMMY1 800x600; xrandr --output DUMMY0 --mode 800x600 --pos 0x0");
        Second(true);
        manager_.emplace("openbox >/dev/null 2>&1");
        usable_ = Eventually([] {
            return ShellOutput("xprop -root _NET_WORKAREA 2>/dev/null").find("1600, 600") !=
                   std::string::npos;
        });
    }
    ~TwoScreens() { setenv("DISPLAY", before_.c_str(), 1); }

    explicit operator bool() const { return usable_; }

    // Connects the screen on the right, or takes it away. The desktop's size stays, because the window
    // manager takes the screens of the moment at which that changes, and then one may not be there yet.
    void Second(bool there) const {
        ShellOutput(std::string("xrandr --fb 1600x600 --output DUMMY1 ") +
                    (there ? "--mode 800x600 --pos 800x0" : "--off") + "; xrandr");
    }

  private:
    const std::string before_, folder_;
    std::optional<Background> server_, manager_;
    bool usable_ = false;
};

struct Place {
    int x = 0, y = 0;
    auto operator<=>(const Place&) const = default;
};
using Places = std::vector<Place>;

void PrintTo(const Place& place, std::ostream* stream) { *stream << place.x << "," << place.y; }

// Where the windows of notes stand, from left to right.
Places NotePlaces() {
    Places places;
    for (const std::string& window : Windows()) {
        Place place;
        int width = 0, height = 0;
        std::sscanf(ShellOutput("xdotool getwindowgeometry --shell " + window + " 2>/dev/null").c_str(),
                    "WINDOW=%*d X=%d Y=%d WIDTH=%d HEIGHT=%d", &place.x, &place.y, &width, &height);
        if (width == kWidth && height == kHeight) places.push_back(place);
    }
    std::sort(places.begin(), places.end());
    return places;
}

void ExpectPlaces(const Places& expected) {
    Places places;
    Eventually([&] { return (places = NotePlaces()) == expected; });
    EXPECT_EQ(places, expected);
}

void SaveNotes(const Places& places) {
    std::vector<Note> notes;
    for (const Place& place : places)
        notes.push_back(
            {.text = L"Notiz", .place = {place.x * 15.0, place.y * 15.0, kWidth * 15, kHeight * 15}});
    std::vector<const Note*> all;
    for (const Note& note : notes) all.push_back(&note);
    EXPECT_TRUE(WriteStoredImage(false, all, {}).Kept());
}

Places SavedPlaces() {
    Places places;
    for (const StoredNote& each : ReadStoredImage().notes)
        places.push_back(
            {static_cast<int>(each.note.place.left) / 15, static_cast<int>(each.note.place.top) / 15});
    return places;
}

}  // namespace

TEST(Screens, NotesComeToTheScreenThatIsLeftAndGoBack) {
    const TwoScreens screens;
    if (!screens) GTEST_SKIP() << "no display server with several outputs";
    const Place left{60, 60}, right{1000, 200}, dragged{1300, 400};
    const Places saved{left, right, dragged};
    SaveNotes(saved);
    {
        const Process program({});
        ExpectPlaces({left, right, dragged});
        screens.Second(false);
        ExpectPlaces({left, {560, 200}, {560, 400}});
        screens.Second(true);
        ExpectPlaces({left, right, dragged});
        EXPECT_EQ(SavedPlaces(), saved);
    }
    screens.Second(false);
    Process program({});
    ExpectPlaces({left, {560, 200}, {560, 400}});
    EXPECT_EQ(SavedPlaces(), saved);

    // What the user moves has its place where he leaves it.
    ShellOutput(
        "xdotool mousemove --sync 640 450 mousedown 1 mousemove --sync 500 450 mousemove --sync 440 450 "
        "mouseup 1");
    ExpectPlaces({left, {360, 400}, {560, 200}});
    EXPECT_TRUE(Eventually([&] { return SavedPlaces() == Places{left, right, {360, 400}}; }));
    screens.Second(true);
    ExpectPlaces({left, {360, 400}, right});
    program.Signal(SIGTERM);
    EXPECT_EQ(program.Wait(), 0);
    EXPECT_EQ(SavedPlaces(), (Places{left, right, {360, 400}}));
}
