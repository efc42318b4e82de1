#include <gtest/gtest.h>
#include <wx/display.h>

#include "notes/NotePaint.h"
#include "notes/NoteWindow.h"
#include "notes/frmNote.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Events.h"
#include "tray/Notification.h"

namespace {

using Calls = std::vector<std::wstring>;

class FrmNote : public testing::Test {
  protected:
    FrmNote() : note(new frmNote(recorder)) {}
    ~FrmNote() override { RunPosted(); }  // what the note has put off goes to this recorder

    wxPoint Pixels(double x, double y) const {
        return {static_cast<int>(x / TwipsPerPixelX(*note)), static_cast<int>(y / TwipsPerPixelY(*note))};
    }
    // A mouse event at a place in twips.
    void Mouse(wxEventType type, double x, double y) {
        wxMouseEvent event(type);
        event.SetPosition(Pixels(x, y));
        event.SetEventObject(note.get());
        note->ProcessWindowEvent(event);
    }
    void Click(const TwipsRect& part) {
        Mouse(wxEVT_LEFT_DOWN, part.left + part.width / 2, part.top + part.height / 2);
        Mouse(wxEVT_LEFT_UP, part.left + part.width / 2, part.top + part.height / 2);
    }

    void PressKey(int code) {
        wxKeyEvent event(wxEVT_CHAR_HOOK);
        event.m_keyCode = code;
        note->ProcessWindowEvent(event);
    }

    NoteRecorder recorder;
    NotePtr note;
};

}  // namespace

TEST_F(FrmNote, HiddenForegroundIsAppliedByReadingIt) {
    note->HiddenForeground(true);
    EXPECT_TRUE(note->Foreground());
    EXPECT_FALSE(note->HiddenForeground());
    EXPECT_EQ(Take(recorder), (Calls{L"save", L"apply"}));
    EXPECT_TRUE(note->Foreground());
}

TEST_F(FrmNote, IsTouchedByWhatTheUserDoesWithIt) {
    note->SizeTo(3000, 2000);
    const std::pair<const char*, std::function<void()>> touches[] = {
        {"press", [&] { Mouse(wxEVT_LEFT_DOWN, note->Layout().chkForeground.left + 50, 50); }},
        {"menu", [&] { Mouse(wxEVT_RIGHT_UP, 1000, 1000); }},
        {"key", [&] { PressKey(WXK_TAB); }},
        {"minimized", [&] { note->Minimized(true); }},
        {"back", [&] { note->Minimized(false); }},
        {"text", [&] { note->Text(L"a"); }},
        {"foreground", [&] { note->Foreground(true); }},
    };
    for (const auto& [name, touch] : touches) {
        note->Untouched(true);
        note->ShowStacked();
        note->PlaceOnScreens();
        Mouse(wxEVT_MOTION, 1000, 1000);
        PressKey(WXK_F12);
        EXPECT_TRUE(note->Untouched());
        touch();
        EXPECT_FALSE(note->Untouched()) << name;
    }
}

TEST_F(FrmNote, CtrlAndAClickOpenAnAddressAcrossItsLines) {
    note->Text(L"siehe http://example.org/aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa und");
    note->SizeTo(2400, 4000);
    note->ShowStacked();
    RunPosted();
    Take(recorder);
    const TwipsRect text = note->Layout().lblMessage;
    const auto click = [&](double y) {
        for (const wxEventType type : {wxEVT_MOTION, wxEVT_LEFT_DOWN, wxEVT_LEFT_UP}) {
            wxMouseEvent event(type);
            event.SetPosition(Pixels(text.left + 300, y));
            event.SetControlDown(true);
            note->ProcessWindowEvent(event);
        }
        RunPosted();
        return Take(recorder);
    };
    const double line = 300;  // a little more than a line is high
    const std::wstring opened =
        L"open http://example.org/aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa";
    EXPECT_EQ(click(text.top + 1.5 * line), Calls{opened});
    EXPECT_EQ(click(text.top + 2.5 * line), Calls{opened});
}

TEST_F(FrmNote, ShowsAbsurdValuesClampedAndKeepsThem) {
    note->Text(std::wstring(5000, L'W'));
    note->FontNoteSize(2'000'000'000);
    note->Color(0x123456);
    note->FontNoteAlignment(77);
    note->Place({-2147483648.0, 2147483647.0, 2147483647.0, 2147483647.0});
    note->ShowStacked();
    RunEvents();
    EXPECT_EQ(note->FontNoteSize(), 2'000'000'000);
    EXPECT_EQ(note->Left(), -2147483648.0);
    EXPECT_EQ(note->Width(), 2147483647.0);
    EXPECT_LE(note->WindowRect().width, wxGetDisplaySize().x);
    EXPECT_LE(note->WindowRect().height, wxGetDisplaySize().y);
}

TEST_F(FrmNote, OutsideEveryScreenItIsShownOnTheNearestAndKeepsItsPlace) {
    const wxRect screen = wxDisplay(0u).GetGeometry();
    for (const bool minimized : {false, true}) {
        SCOPED_TRACE(minimized);
        note->Place({(screen.GetRight() + 500) * 15.0, -400 * 15, 3000, 2000});
        if (minimized) {
            note->Minimized(true);
            note->PlaceOnScreens();
            note->Minimized(false);
        } else {
            note->ShowStacked();
        }
        RunEvents();
        EXPECT_TRUE(wxDisplay(0u).GetClientArea().Contains(note->WindowRect()));
        EXPECT_EQ(note->Left(), (screen.GetRight() + 500) * 15);
        EXPECT_EQ(note->Top(), -400 * 15);
    }
}

TEST_F(FrmNote, StandsWhereItWasPlaced) {
    for (const wxPoint place : {wxPoint(300, 200), wxPoint(-1, -1), wxPoint(-100, 40), wxPoint(40, -1)}) {
        SCOPED_TRACE(testing::Message() << place.x << ", " << place.y);
        note->Place({place.x * 15.0, place.y * 15.0, 3000, 2400});
        note->ShowStacked();
        const wxRect rect(place, wxSize(200, 160));
        EXPECT_TRUE(RunUntil([&] { return RectOnScreen(*note) == rect; }));
        EXPECT_EQ(note->WindowRect(), rect);
    }
}

TEST_F(FrmNote, AutoSizeFitsTheTextWithoutBreakingIt) {
    const wchar_t* const texts[] = {L"", L"kurz", L"Zwei\r\nZeilen & mehr", L"Übergröße €"};
    for (const wchar_t* text : texts) {
        for (const int size : {8, 12, 25}) {
            note->Text(text);
            note->FontNoteSize(size);
            note->AutoSize();
            const wxFont font(wxFontInfo(size).FaceName(L"Arial"));
            const wxSize label = NaturalTextSize(text, font);
            EXPECT_EQ(note->Width(), std::max(label.x * 15 + 480, 750));
            EXPECT_EQ(note->Height(), std::max(label.y * 15 + 480 + 300, 750));
        }
    }
    note->Text(L"lang");
    note->AutoSize();
    const double narrow = note->Width();
    note->FontNoteBold(true);
    note->AutoSize();
    EXPECT_GT(note->Width(), narrow);
}

// The same text needs more room with the letters of another computer. A user who leaves room for much less of
// it means it.
TEST_F(FrmNote, WhatWasSizedElsewhereShowsAllOfItsText) {
    Note content = note->Content();
    content.text = L"Kleiner als der Text\r\nund noch eine Zeile";
    content.place = {900, 900, 0, 0};
    note->Content(content);
    note->AutoSize();
    const NotePlace natural = note->Content().place;
    const wxSize size = note->WindowRect().GetSize();
    for (const auto& [width, height, all] : {std::tuple(0.9, 1.0, true), std::tuple(1.0, 0.9, true),
                                             std::tuple(0.6, 1.0, false), std::tuple(1.0, 0.6, false)}) {
        SCOPED_TRACE(testing::Message() << width << ", " << height);
        content.place = {900, 900, natural.width * width, natural.height * height};
        note->Content(content);
        const wxSize stored = note->WindowRect().GetSize();
        note->ShowStacked();
        EXPECT_TRUE(RunUntil([&] { return RectOnScreen(*note).has_value(); }));
        note->Refresh();
        note->Update();
        RunEvents();
        EXPECT_EQ(note->WindowRect().GetSize(), all ? size : stored);
        EXPECT_EQ(note->Content().place, content.place);
    }
}

TEST_F(FrmNote, WiderThanTheScreensItShowsAllItsLines) {
    std::wstring text;
    while (text.size() < 2000) text += L"Wörter ";
    note->Text(text);
    note->PlaceAt(900, 900);
    note->AutoSize();
    const double width = note->Width(), height = note->Height();
    EXPECT_GT(width, wxGetDisplaySize().x * 15);
    const wxFont font(wxFontInfo(kDefaultFontSize).FaceName(L"Arial"));
    const wxRect window = note->WindowRect();
    EXPECT_GE(window.height, NaturalTextSize(text, font, window.width - 32).y + 32 + 20);
    EXPECT_TRUE(wxGetClientDisplayRect().Contains(note->WindowRect()));

    // What is stored changes with what the user does, and then both ways.
    note->ShowStacked();
    RunEvents();
    EXPECT_EQ(note->Width(), width);
    EXPECT_EQ(note->Height(), height);
    const int shown = note->WindowRect().height;
    wxKeyEvent narrower(wxEVT_CHAR_HOOK);
    narrower.m_keyCode = WXK_LEFT;
    narrower.SetShiftDown(true);
    note->ProcessWindowEvent(narrower);
    EXPECT_LT(note->Width(), wxGetDisplaySize().x * 15);
    EXPECT_EQ(note->Height(), shown * 15);
}

TEST_F(FrmNote, MinimizesToItsOwnIconAndBack) {
    note->SizeTo(3000, 2000);
    note->ShowStacked();
    note->Close();
    EXPECT_TRUE(note->Minimized());
    EXPECT_FALSE(note->IsShown());
    note->Minimized(false);
    Click(note->Layout().cmdMinimize);
    EXPECT_TRUE(note->Minimized());
    EXPECT_FALSE(note->IsShown());
    ASSERT_TRUE(note->TrayIcon());
    EXPECT_TRUE(note->TrayIcon()->Shown());
    note->Color(kGreen);
    EXPECT_TRUE(note->TrayIcon()->IconFile().bitmap.IsSameAs(ResourcePicture(NoteIcon(kGreen)).bitmap));

    // Re-stacking all notes leaves a minimized one alone.
    note->ShowStacked();
    EXPECT_FALSE(note->IsShown());
    Take(recorder);

    note->TrayIcon()->Events.DblClick(2);
    EXPECT_TRUE(note->Minimized());
    note->TrayIcon()->Events.DblClick(1);
    EXPECT_FALSE(note->Minimized());
    EXPECT_TRUE(note->IsShown());
    EXPECT_FALSE(note->TrayIcon()->Shown());
    EXPECT_EQ(Take(recorder), Calls{L"forget"});
}

TEST_F(FrmNote, TipIsTheCleanedTextCutAt55) {
    const std::pair<std::wstring, std::wstring> rows[] = {
        {std::wstring(55, L'x'), std::wstring(55, L'x')},
        {std::wstring(56, L'x'), std::wstring(55, L'x') + L" ..."},
        {L"a\r\nb\n\rc\t\n", L"a b  c "},
    };
    for (const auto& [text, tip] : rows) {
        note->Text(text);
        note->Minimized(true);
        EXPECT_EQ(note->TrayIcon()->IconToolTip(), tip);
    }
}

TEST_F(FrmNote, MouseDoesWhatThePartUnderItDoes) {
    note->SizeTo(3000, 2000);
    note->ShowStacked();
    RunEvents();
    const NoteLayout& parts = note->Layout();
    const auto middle = [](const TwipsRect& part) {
        return std::pair(part.left + part.width / 2, part.top + part.height / 2);
    };

    Click(parts.chkForeground);
    EXPECT_TRUE(note->Foreground());
    EXPECT_EQ(Take(recorder), (Calls{L"save", L"apply"}));

    // Pressed on the button, released beside it: no click.
    Mouse(wxEVT_LEFT_DOWN, middle(parts.chkForeground).first, middle(parts.chkForeground).second);
    Mouse(wxEVT_LEFT_UP, 1500, 1000);
    EXPECT_TRUE(note->Foreground());

    struct Row {
        wxEventType type;
        double x, y;
        Calls calls;
    };
    const auto [timeX, timeY] = middle(parts.lblZeit);
    const auto [cornerX, cornerY] = middle(parts.picEcke);
    const Row rows[] = {
        {wxEVT_LEFT_DCLICK, 1500, 1000, {L"edit"}},   {wxEVT_LEFT_DCLICK, 1500, 150, {L"edit"}},
        {wxEVT_LEFT_DCLICK, timeX, timeY, {L"edit"}}, {wxEVT_RIGHT_UP, 1500, 1000, {L"menu"}},
        {wxEVT_RIGHT_UP, 1500, 150, {L"menu"}},       {wxEVT_RIGHT_UP, timeX, timeY, {}},
        {wxEVT_RIGHT_UP, cornerX, cornerY, {}},       {wxEVT_LEFT_DOWN, timeX, timeY, {L"save"}},
    };
    Take(recorder);
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << row.x << ", " << row.y);
        Mouse(row.type, row.x, row.y);
        RunPosted();
        EXPECT_EQ(Take(recorder), row.calls);
    }
}
