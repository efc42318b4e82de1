// What a note looks like, in a picture of it.
#include <gtest/gtest.h>
#include <wx/dcclient.h>
#include <wx/dcmemory.h>
#include <wx/frame.h>
#include <wx/image.h>

#include <set>

#include "base/Text.h"
#include "notes/NotePaint.h"
#include "notes/NoteWindow.h"
#include "tests/support/Events.h"

namespace {

const wxSize kSize(240, 160);

// The note as a window paints it.
wxImage Painted(const Note& note, const NoteHints& hints = {}) {
    wxFrame window(nullptr, wxID_ANY, L"Notiz", wxDefaultPosition, wxDefaultSize, wxBORDER_NONE);
    window.SetBackgroundStyle(wxBG_STYLE_PAINT);
    window.SetClientSize(kSize);
    wxBitmap picture(kSize);
    bool painted = false;
    window.Bind(wxEVT_PAINT, [&](wxPaintEvent&) {
        wxPaintDC dc(&window);
        const double x = TwipsPerPixelX(window), y = TwipsPerPixelY(window);
        PaintNote(dc, note, hints, LayoutNote(kSize.x * x, kSize.y * y), 1 / x, 1 / y);
        wxMemoryDC memory(picture);
        memory.Blit(wxPoint(), kSize, &dc, wxPoint());
        painted = true;
    });
    window.Show();
    EXPECT_TRUE(RunUntil([&] { return painted; }));
    return picture.ConvertToImage();
}

// How many pixels of a place are much darker than its paper, and where the first of them stands from the
// left.
struct Ink {
    int pixels = 0, left = kSize.x;
};
Ink InkIn(const wxImage& image, const wxRect& place) {
    Ink ink;
    for (int x = place.x; x <= place.GetRight(); ++x) {
        for (int y = place.y; y <= place.GetBottom(); ++y) {
            if (image.GetRed(x, y) + image.GetGreen(x, y) + image.GetBlue(x, y) > 330) continue;
            ++ink.pixels;
            ink.left = std::min(ink.left, x);
        }
    }
    return ink;
}

// Within the frame, above the date; the date beside the corner; the two controls.
const wxRect kText(16, 18, 208, 108), kDate(16, 141, 180, 18), kMark(210, 1, 13, 13);

const Note kNote{.text = L"Milch, Brot", .creationTime = L"21.11.2026, 09:05:00", .look = {.size = 20}};

Note With(void (*change)(Note&)) {
    Note note = kNote;
    change(note);
    return note;
}

TEST(NotePaint, ShowsTextAndDateOnPaperOfItsColour) {
    for (const std::int32_t color : kNoteColors) {
        SCOPED_TRACE(color);
        Note note = kNote;
        note.look.color = color;
        const wxImage image = Painted(note);
        const wxColour paper = ToColour(DisplayColor(color));
        for (const wxPoint& place : {wxPoint(5, 5), wxPoint(8, 80), wxPoint(120, 130)})
            EXPECT_EQ(wxColour(image.GetRed(place.x, place.y), image.GetGreen(place.x, place.y),
                               image.GetBlue(place.x, place.y)),
                      paper);
        EXPECT_GT(InkIn(image, kText).pixels, 100);
        EXPECT_GT(InkIn(image, kDate).pixels, 30);
    }
}

TEST(NotePaint, EachPartOfTheLookIsSeen) {
    const wxImage plain = Painted(kNote);
    const Ink text = InkIn(plain, kText);
    for (const NoteStyle& style : kNoteStyles) {
        Note note = kNote;
        note.look.*style.flag = true;
        EXPECT_NE(InkIn(Painted(note), kText).pixels, text.pixels) << ToUtf8(style.caption);
    }
    EXPECT_GT(InkIn(Painted(With([](Note& note) { note.look.size = 25; })), kText).pixels, text.pixels);
    EXPECT_EQ(InkIn(Painted(With([](Note& note) { note.text.clear(); })), kText).pixels, 0);
    EXPECT_EQ(InkIn(Painted(With([](Note& note) { note.creationTime.clear(); })), kDate).pixels, 0);
    const Ink centred = InkIn(Painted(With([](Note&note) { note.look.alignment = kAlignCentre; })), kText),
              right = InkIn(Painted(With([](Note&note) { note.look.alignment = kAlignRight; })), kText);
    EXPECT_LT(text.left + 5, centred.left);
    EXPECT_LT(centred.left + 5, right.left);
    EXPECT_GT(InkIn(Painted(With([](Note& note) { note.foreground = true; })), kMark).pixels,
              InkIn(plain, kMark).pixels);
}

TEST(NotePaint, WhatPointerAndKeyboardAreOnIsSeen) {
    const NoteHints hints[] = {{},
                               {.hovered = NotePart::cmdMinimize},
                               {.hovered = NotePart::cmdMinimize, .pressed = true},
                               {.hovered = NotePart::chkForeground},
                               {.focus = NotePart::Body},
                               {.focus = NotePart::chkForeground},
                               {.focus = NotePart::cmdMinimize},
                               {.link = {0, 5, L"http://a.de"}}};
    std::set<std::string> pictures;
    for (const NoteHints& each : hints) {
        const wxImage image = Painted(kNote, each);
        pictures.emplace(reinterpret_cast<const char*>(image.GetData()), 3 * kSize.x * kSize.y);
    }
    EXPECT_EQ(pictures.size(), std::size(hints));
    // The line stands below the address alone, also behind other words.
    const wxRect before(16, 18, 40, 108);
    EXPECT_EQ(InkIn(Painted(kNote, {.link = {7, 11, L"http://a.de"}}), before).pixels,
              InkIn(Painted(kNote), before).pixels);
}

}  // namespace
