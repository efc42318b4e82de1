#include <gtest/gtest.h>
#include <wx/display.h>

#include "notes/NoteFont.h"
#include "notes/NotePaint.h"
#include "notes/NoteWindow.h"
#include "notes/frmNote.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Events.h"
#include "tests/support/Stacking.h"
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
    NotePlace Twips(const wxRect& pixels) const {
        const double x = TwipsPerPixelX(*note), y = TwipsPerPixelY(*note);
        return {pixels.x * x, pixels.y * y, pixels.width * x, pixels.height * y};
    }
    // A mouse event at a place in twips.
    void Mouse(wxEventType type, double x, double y, bool control = false) {
        wxMouseEvent event(type);
        event.SetControlDown(control);
        event.SetPosition(Pixels(x, y));
        event.SetEventObject(note.get());
        note->ProcessWindowEvent(event);
    }
    void MouseOn(wxEventType type, const TwipsRect& part) {
        Mouse(type, part.left + part.width / 2, part.top + part.height / 2);
    }
    void Click(const TwipsRect& part) {
        MouseOn(wxEVT_LEFT_DOWN, part);
        MouseOn(wxEVT_LEFT_UP, part);
    }

    void PressKey(int code, bool shift = false) {
        wxKeyEvent event(wxEVT_CHAR_HOOK);
        event.m_keyCode = code;
        event.SetShiftDown(shift);
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
        for (const wxEventType type : {wxEVT_MOTION, wxEVT_LEFT_DOWN, wxEVT_LEFT_UP})
            Mouse(type, text.left + 300, y, true);
        RunPosted();
        return Take(recorder);
    };
    const double line = 300;  // a little more than a line is high
    const std::wstring opened =
        L"open http://example.org/aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa";
    EXPECT_EQ(click(text.top + 1.5 * line), Calls{opened});
    EXPECT_EQ(click(text.top + 2.5 * line), Calls{opened});
    EXPECT_EQ(note->GetToolTipText(), L"Strg+Klick öffnet die Adresse");
    // Not when it is let go elsewhere, and nothing else besides.
    Mouse(wxEVT_LEFT_DOWN, text.left + 300, text.top + 1.5 * line, true);
    Mouse(wxEVT_LEFT_UP, text.left + 300, text.top + 0.5 * line, true);
    Mouse(wxEVT_LEFT_DCLICK, text.left + 300, text.top + 1.5 * line, true);
    RunPosted();
    EXPECT_EQ(Take(recorder), Calls{});
}

TEST_F(FrmNote, APressBringsItToTheFront) {
    const NotePtr other(new frmNote(recorder));
    for (frmNote* const each : {note.get(), other.get()}) {
        each->Place({3000, 3000, 3000, 2000});
        each->ShowStacked();
        ASSERT_TRUE(RunUntil([&] { return RectOnScreen(*each) == each->WindowRect(); }));
    }
    ASSERT_TRUE(RunUntil([&] { return StandsAbove(*other, *note); }));
    MouseOn(wxEVT_LEFT_DOWN, note->Layout().lblZeit);
    EXPECT_TRUE(RunUntil([&] { return StandsAbove(*note, *other); }));
}

TEST_F(FrmNote, ShowsImpossibleValuesAsFarAsScreensCanAndKeepsThem) {
    note->Text(std::wstring(5000, L'W'));
    note->Color(0x123456);
    note->FontNoteAlignment(77);
    const NotePlace places[] = {{-2147483648.0, 2147483647.0, 2147483647.0, 2147483647.0},
                                {2147483647.0, -6000, 3000, 2000}};
    for (const NotePlace& place : places) {
        for (const bool minimized : {false, true}) {
            SCOPED_TRACE(testing::Message() << place.left << " " << minimized);
            note->FontNoteSize(2'000'000'000);
            note->Place(place);
            note->Minimized(minimized);
            note->PlaceOnScreens();
            note->Minimized(false);
            RunPosted();
            EXPECT_TRUE(wxDisplay(0u).GetGeometry().Contains(note->WindowRect()));
            EXPECT_EQ(note->FontNoteSize(), 2'000'000'000);
            EXPECT_EQ(note->Content().place, place);
        }
    }
}

TEST_F(FrmNote, StandsWhereItWasPlaced) {
    for (const wxPoint place : {wxPoint(300, 200), wxPoint(-1, -1), wxPoint(-100, 40), wxPoint(40, -1)}) {
        SCOPED_TRACE(testing::Message() << place.x << ", " << place.y);
        const wxRect rect(place, wxSize(200, 160));
        note->Place(Twips(rect));
        note->ShowStacked();
        EXPECT_TRUE(RunUntil([&] { return RectOnScreen(*note) == rect; }));
        EXPECT_EQ(note->WindowRect(), rect);
    }
}

TEST_F(FrmNote, AutoSizeFitsTheTextWithoutBreakingIt) {
    const NoteLook looks[] = {{.size = 8}, {.size = 12, .italic = true}, {.size = 25, .bold = true}};
    const double smallest = kSmallestPixels * TwipsPerPixelX(*note);
    for (const wchar_t* text : {L"", L"kurz", L"Zwei\r\nZeilen & mehr", L"Übergröße €"}) {
        for (const NoteLook& look : looks) {
            note->Content({.text = text, .look = look});
            note->AutoSize();
            const NotePlace label = Twips(NaturalTextSize(text, NoteFont(look)));
            EXPECT_EQ(note->Width(), std::max(label.width + 480, smallest));
            EXPECT_EQ(note->Height(), std::max(label.height + 480 + 300, smallest));
        }
    }
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
        ASSERT_TRUE(RunUntil([&] { return RectOnScreen(*note) == note->WindowRect(); }));
        EXPECT_TRUE(RunUntil([&] {
            note->Refresh();
            note->Update();
            RunPosted();
            return note->WindowRect().GetSize() == (all ? size : stored);
        }));
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
    EXPECT_GT(width, Twips(wxGetDisplaySize()).width);
    const auto lines =
        PaintedLines(note->Content(), note->Layout(), 1 / TwipsPerPixelX(*note), 1 / TwipsPerPixelY(*note));
    const NotePlace last = Twips(lines.back().place);
    EXPECT_LE(last.top + last.height, note->Layout().lblMessage.Bottom());
    EXPECT_TRUE(wxGetClientDisplayRect().Contains(note->WindowRect()));

    // What is stored changes with what the user does, and then both ways.
    note->ShowStacked();
    RunPosted();
    EXPECT_EQ(note->Width(), width);
    EXPECT_EQ(note->Height(), height);
    const double shown = Twips(note->WindowRect()).height;
    PressKey(WXK_LEFT, true);
    EXPECT_LT(note->Width(), Twips(wxGetDisplaySize()).width);
    EXPECT_EQ(note->Height(), shown);
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
    // Cleaned, and cut at 55 characters.
    note->Text(L"a\r\nb\n\rc\t\n" + std::wstring(49, L'x'));
    EXPECT_EQ(note->TrayIcon()->IconToolTip(), L"a b  c " + std::wstring(48, L'x') + L" ...");

    // Re-stacking all notes leaves a minimized one alone.
    note->ShowStacked();
    EXPECT_FALSE(note->IsShown());
    Take(recorder);

    note->TrayIcon()->Events.MouseUp(1);
    note->TrayIcon()->Events.MouseUp(2);
    note->TrayIcon()->Events.ContextMenu();
    RunPosted();
    EXPECT_EQ(Take(recorder), (Calls{L"menu", L"menu"}));
    note->TrayIcon()->Events.DblClick(2);
    EXPECT_TRUE(note->Minimized());
    note->TrayIcon()->Events.DblClick(1);
    EXPECT_FALSE(note->Minimized());
    EXPECT_TRUE(note->IsShown());
    EXPECT_FALSE(note->TrayIcon()->Shown());
    EXPECT_EQ(Take(recorder), Calls{L"forget"});
}

TEST_F(FrmNote, MouseDoesWhatThePartUnderItDoes) {
    note->SizeTo(3000, 2000);
    note->ShowStacked();
    RunEvents();
    const NoteLayout& parts = note->Layout();
    MouseOn(wxEVT_MOTION, parts.cmdMinimize);
    EXPECT_EQ(note->GetToolTipText(), L"Minimieren");
    Click(parts.chkForeground);
    EXPECT_TRUE(note->Foreground());
    EXPECT_EQ(Take(recorder), (Calls{L"save", L"apply"}));

    // Pressed on the button, released beside it: no click.
    MouseOn(wxEVT_LEFT_DOWN, parts.chkForeground);
    Mouse(wxEVT_LEFT_UP, 1500, 1000);
    EXPECT_TRUE(note->Foreground());
    // The second of two quick clicks counts, too.
    MouseOn(wxEVT_LEFT_DCLICK, parts.chkForeground);
    MouseOn(wxEVT_LEFT_UP, parts.chkForeground);
    EXPECT_FALSE(note->Foreground());

    const TwipsRect body{1500, 150, 0, 0};
    const struct {
        wxEventType type;
        const TwipsRect& part;
        Calls calls;
    } rows[] = {
        {wxEVT_LEFT_DCLICK, parts.lblMessage, {L"edit"}},
        {wxEVT_LEFT_DCLICK, body, {L"edit"}},
        {wxEVT_LEFT_DCLICK, parts.lblZeit, {L"edit"}},
        {wxEVT_RIGHT_UP, parts.lblMessage, {L"menu"}},
        {wxEVT_RIGHT_UP, body, {L"menu"}},
        {wxEVT_RIGHT_UP, parts.lblZeit, {}},
        {wxEVT_RIGHT_UP, parts.picEcke, {}},
        {wxEVT_LEFT_DOWN, parts.lblZeit, {L"save"}},
    };
    Take(recorder);
    for (const auto& row : rows) {
        MouseOn(row.type, row.part);
        RunPosted();
        EXPECT_EQ(Take(recorder), row.calls) << row.part.left << ", " << row.part.top;
    }
}
