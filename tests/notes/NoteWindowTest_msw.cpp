#include <windows.h>

#include <commctrl.h>
#include <gtest/gtest.h>
#include <oleacc.h>
#include <wx/dcclient.h>

#include "notes/NoteAccess.h"
#include "notes/NoteFont.h"
#include "notes/NotePaint.h"
#include "notes/NotePlace.h"
#include "notes/ScreenWatch.h"
#include "notes/frmNote.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Events.h"

namespace {

class NoteWindowOnWindows : public testing::Test {
  protected:
    ~NoteWindowOnWindows() override {
        notes_.clear();
        RunEvents();
    }

    frmNote& Show() {
        frmNote& note = *notes_.emplace_back(new frmNote(recorder_));
        note.PlaceAt(1500, 1500);
        note.SizeTo(3000, 3000);
        note.ShowStacked();
        return note;
    }

    NoteRecorder recorder_;
    std::vector<NotePtr> notes_;
};

// As Windows tells every window.
BOOL CALLBACK TellOfTheTaskBar(HWND window, LPARAM) {
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    if (process == GetCurrentProcessId()) SendMessageW(window, WM_SETTINGCHANGE, SPI_SETWORKAREA, 0);
    return TRUE;
}

// The cut corner belongs to no window, so what lies below it is seen and gets the mouse.
TEST_F(NoteWindowOnWindows, IsCutToItsOutline) {
    const frmNote& note = Show();
    const HRGN region = CreateRectRgn(0, 0, 0, 0);
    ASSERT_NE(GetWindowRgn(note.GetHandle(), region), ERROR);
    const wxSize size = note.GetSize();
    EXPECT_FALSE(PtInRegion(region, size.x - 2, size.y - 2));
    EXPECT_TRUE(PtInRegion(region, size.x - 2, size.y - 40));
    EXPECT_TRUE(PtInRegion(region, size.x - 30, size.y - 2));
    DeleteObject(region);
}

// At every resolution: a text is measured without a window before there is one.
TEST_F(NoteWindowOnWindows, IsMeasuredAsItIsPainted) {
    frmNote& note = Show();
    const wxFont& font = NoteFont({});
    wxClientDC dc(&note);
    dc.SetFont(font);
    EXPECT_EQ(NaturalTextSize(L"Milch", font, 0, 1000), dc.GetTextExtent(L"Milch"));
}

// What the note asks Windows for when it is pressed, and where Windows has moved it when that returns.
struct Gesture {
    wxRect moved;
    WPARAM hit = HTNOWHERE;
    HWND capture = nullptr;
};

LRESULT CALLBACK InPlaceOfWindows(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                  DWORD_PTR data) {
    if (message != WM_NCLBUTTONDOWN) return DefSubclassProc(window, message, wParam, lParam);
    auto& gesture = *reinterpret_cast<Gesture*>(data);
    gesture.hit = wParam;
    gesture.capture = GetCapture();
    const wxRect& place = gesture.moved;
    SetWindowPos(window, nullptr, place.x, place.y, place.width, place.height, SWP_NOZORDER | SWP_NOACTIVATE);
    return 0;
}

TEST_F(NoteWindowOnWindows, LetsWindowsMoveAndSizeItAndKeepsItsNewPlace) {
    struct {
        const char* what;
        wxPoint press;
        WPARAM hit;
        wxRect moved;
    } const rows[] = {
        {"moved by its text", {100, 100}, HTCAPTION, {160, 140, 200, 200}},
        {"sized by its corner", {185, 180}, HTBOTTOMRIGHT, {100, 100, 230, 250}},
        {"sized by its left edge", {2, 100}, HTLEFT, {80, 100, 220, 200}},
        {"only clicked", {100, 100}, HTCAPTION, {100, 100, 200, 200}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        frmNote& note = Show();
        Gesture gesture{row.moved};
        SetWindowSubclass(note.GetHandle(), InPlaceOfWindows, 1, reinterpret_cast<DWORD_PTR>(&gesture));
        Take(recorder_);
        SendMessageW(note.GetHandle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(row.press.x, row.press.y));
        RemoveWindowSubclass(note.GetHandle(), InPlaceOfWindows, 1);
        EXPECT_EQ(gesture.hit, row.hit);
        EXPECT_EQ(gesture.capture, nullptr);  // else Windows would not get the mouse
        EXPECT_EQ(Take(recorder_), (std::vector<std::wstring>{L"save"}));
        EXPECT_EQ(NotePixels(note, note.Content().place), row.moved);
        MINMAXINFO limits{};
        SendMessageW(note.GetHandle(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
        EXPECT_EQ(limits.ptMinTrackSize.x, static_cast<LONG>(kSmallestPixels));
        EXPECT_EQ(limits.ptMinTrackSize.y, static_cast<LONG>(kSmallestPixels));
    }
}

TEST_F(NoteWindowOnWindows, HearsOfTheTaskBar) {
    int changes = 0;
    const ScreenWatch watch([&] { ++changes; });
    EnumWindows(TellOfTheTaskBar, 0);
    EXPECT_TRUE(RunUntil([&] { return changes > 0; }));
    EXPECT_EQ(changes, 1);
}

TEST_F(NoteWindowOnWindows, TellsReadersItsTextAndItsControls) {
    frmNote& note = Show();
    note.Text(L"Milch");
    void* made = nullptr;
    ASSERT_EQ(AccessibleObjectFromWindow(note.GetHandle(), static_cast<DWORD>(OBJID_CLIENT), IID_IAccessible,
                                         &made),
              S_OK);
    auto* const reader = static_cast<IAccessible*>(made);
    const auto part = [](LONG id) {
        VARIANT value{};
        value.vt = VT_I4;
        value.lVal = id;
        return value;
    };
    const auto heard = [&](auto ask, LONG id) {
        BSTR text = nullptr;
        (reader->*ask)(part(id), &text);
        const std::wstring result = text ? text : L"";
        SysFreeString(text);
        return result;
    };
    EXPECT_EQ(heard(&IAccessible::get_accName, 0), L"Notiz: Milch");
    EXPECT_EQ(heard(&IAccessible::get_accValue, 0), L"Milch");
    EXPECT_EQ(heard(&IAccessible::get_accName, 1), NoteAccess::NameOfControl(NotePart::chkForeground));
    EXPECT_EQ(heard(&IAccessible::get_accName, 2), NoteAccess::NameOfControl(NotePart::cmdMinimize));
    reader->accDoDefaultAction(part(1));
    EXPECT_TRUE(RunUntil([&] { return note.Foreground(); }));
    reader->Release();
}

}  // namespace
