#include <windows.h>

#include <gtest/gtest.h>

#include "notes/ScreenWatch.h"
#include "notes/frmNote.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Events.h"
#include "tests/support/Stacking.h"

namespace {

class NoteWindowOnWindows : public testing::Test {
  protected:
    ~NoteWindowOnWindows() override {
        notes_.clear();
        RunEvents();
    }

    frmNote& Show(bool foreground) {
        frmNote& note = *notes_.emplace_back(new frmNote(recorder_));
        note.HiddenForeground(foreground);
        note.PlaceAt(1500, 1500);
        note.SizeTo(3000, 3000);
        note.ShowStacked();
        return note;
    }

    NoteRecorder recorder_;
    std::vector<NotePtr> notes_;
};

TEST_F(NoteWindowOnWindows, StayAboveOtherProgramsWhenAnOrdinaryOneComes) {
    const frmNote& topmost = Show(true);
    frmNote& ordinary = Show(false);
    EXPECT_TRUE(IsKeptAbove(topmost));
    EXPECT_FALSE(IsKeptAbove(ordinary));
    ordinary.BringToFront();
    EXPECT_TRUE(StandsAbove(topmost, ordinary));
    EXPECT_TRUE(IsKeptAbove(topmost));
}

// As Windows tells every window.
BOOL CALLBACK TellOfTheTaskBar(HWND window, LPARAM) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId()) SendMessageW(window, WM_SETTINGCHANGE, SPI_SETWORKAREA, 0);
    return TRUE;
}

// The cut corner belongs to no window, so what lies below it is seen and gets the mouse.
TEST_F(NoteWindowOnWindows, IsCutToItsOutline) {
    const frmNote& note = Show(false);
    const HRGN region = CreateRectRgn(0, 0, 0, 0);
    ASSERT_NE(GetWindowRgn(note.GetHandle(), region), ERROR);
    const wxSize size = note.GetSize();
    EXPECT_FALSE(PtInRegion(region, size.x - 2, size.y - 2));
    EXPECT_TRUE(PtInRegion(region, size.x - 2, size.y - 40));
    EXPECT_TRUE(PtInRegion(region, size.x - 30, size.y - 2));
    DeleteObject(region);
}

TEST_F(NoteWindowOnWindows, HearsOfTheTaskBar) {
    int changes = 0;
    const ScreenWatch watch([&] { ++changes; });
    EnumWindows(TellOfTheTaskBar, 0);
    EXPECT_TRUE(RunUntil([&] { return changes > 0; }));
    EXPECT_EQ(changes, 1);
}

}  // namespace
