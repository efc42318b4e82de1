#include <gtest/gtest.h>
#include <gtk/gtk.h>
#include <wx/checkbox.h>
#include <wx/uiaction.h>

#include "notes/NotePaint.h"
#include "notes/NoteWindow.h"
#include "notes/frmNote.h"
#include "notes/frmProperties.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Events.h"
#include "tests/support/Stacking.h"

// Window managers forget the states of a window that was hidden.
TEST(NoteWindow, KeepsItsStatesWhenItIsHiddenAndShown) {
    for (const bool topmost : {false, true}) {
        SCOPED_TRACE(topmost);
        NoteRecorder recorder;
        const NotePtr note(new frmNote(recorder));
        const auto isBesideOthers = [&] {
            return HasState(*note, "_NET_WM_STATE_SKIP_TASKBAR") &&
                   HasState(*note, "_NET_WM_STATE_SKIP_PAGER");
        };
        const auto expectStates = [&] {
            RunEvents(std::chrono::milliseconds(200));
            EXPECT_TRUE(RunUntil([&] { return isBesideOthers() && IsKeptAbove(*note) == topmost; }));
        };
        note->HiddenForeground(topmost);
        note->ShowStacked();
        expectStates();
        note->Minimized(true);
        ASSERT_TRUE(RunUntil([&] { return !isBesideOthers(); }));
        note->Minimized(false);
        expectStates();
        // At once, before the window manager has dealt with the one and the other.
        note->Minimized(true);
        note->Minimized(false);
        expectStates();
    }
}

// What follows must not be left out because a window does not come.
TEST(NoteWindow, WhoWaitsForTheScreenIsCalledOnceWhateverHappens) {
    NoteRecorder recorder;
    const std::pair<const char*, void (*)(NotePtr&)> rows[] = {
        {"it comes", [](NotePtr& note) { note->ShowStacked(); }},
        {"it never comes", [](NotePtr&) {}},
        {"it goes first", [](NotePtr& note) { note.reset(); }},
    };
    for (const auto& [name, act] : rows) {
        SCOPED_TRACE(name);
        NotePtr note(new frmNote(recorder));
        note->Place({3000, 3000, 3000, 2400});
        int calls = 0;
        WhenOnScreen(*note, [&] { ++calls; });
        EXPECT_EQ(calls, 0);
        act(note);
        EXPECT_TRUE(RunUntil([&] { return calls > 0; }));
        note.reset();
        RunEvents();
        EXPECT_EQ(calls, 1);
    }
}

TEST(NoteWindow, IsAsLargeAsAskedWhateverFrameTheWindowManagerSpeaksOf) {
    NoteRecorder recorder;
    const NotePtr note(new frmNote(recorder));
    note->Place({3000, 3000, 3000, 2400});
    gtk_widget_realize(note->GetHandle());
    GdkWindow* const window = gtk_widget_get_window(note->GetHandle());
    const gulong frame[] = {5, 5, 29, 5};
    gdk_property_change(window, gdk_atom_intern("_NET_FRAME_EXTENTS", FALSE),
                        gdk_atom_intern("CARDINAL", FALSE), 32, GDK_PROP_MODE_REPLACE,
                        reinterpret_cast<const guchar*>(frame), 4);
    RunEvents();
    note->ShowStacked();
    ASSERT_TRUE(RunUntil([&] { return RectOnScreen(*note).has_value(); }));
    EXPECT_EQ(RectOnScreen(*note)->GetSize(), wxSize(200, 160));
}

TEST(NoteWindow, IsMovedAndSizedByTheMouse) {
    NoteRecorder recorder;
    const NotePtr note(new frmNote(recorder));
    note->ShowStacked();
    const wxRect before(200, 200, 200, 160);
    const struct {
        const char* name;
        wxPoint press;
        wxStockCursor pointer;
        wxRect after;
        wxPoint way{20, 10};
    } rows[] = {
        {"middle", {60, 60}, wxCURSOR_NONE, {220, 210, 200, 160}},
        {"left edge", {2, 60}, wxCURSOR_SIZEWE, {220, 200, 180, 160}},
        {"right edge", {197, 60}, wxCURSOR_SIZEWE, {200, 200, 220, 160}},
        {"upper edge", {60, 2}, wxCURSOR_SIZENS, {200, 210, 200, 150}},
        {"lower edge", {60, 157}, wxCURSOR_SIZENS, {200, 200, 200, 170}},
        {"lower left corner", {2, 157}, wxCURSOR_SIZENESW, {220, 200, 180, 170}},
        {"flap", {190, 140}, wxCURSOR_SIZENWSE, {200, 200, 220, 170}},
        {"left edge, too far", {2, 60}, wxCURSOR_SIZEWE, {350, 200, 50, 160}, {190, 0}},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        note->Place({3000, 3000, 3000, 2400});
        ASSERT_TRUE(RunUntil([&] { return RectOnScreen(*note) == before; }));
        Take(recorder);
        wxUIActionSimulator mouse;
        mouse.MouseMove(before.GetPosition() + row.press);
        EXPECT_TRUE(RunUntil([&] {
            const wxCursor shown = note->GetCursor();
            if (!shown.IsOk()) return row.pointer == wxCURSOR_NONE;
            return shown.GetCursor() == wxCursor(row.pointer).GetCursor();
        }));
        mouse.MouseDown();
        mouse.MouseMove(before.GetPosition() + row.press + row.way);
        mouse.MouseUp();
        EXPECT_TRUE(RunUntil([&] { return !recorder.calls.empty(); }));
        EXPECT_EQ(Take(recorder), std::vector<std::wstring>{L"save"});
        const NotePlace place = note->Content().place;
        EXPECT_EQ(place, (NotePlace{row.after.x * 15.0, row.after.y * 15.0, row.after.width * 15.0,
                                    row.after.height * 15.0}));
    }
}

TEST(NoteWindow, LinesThatReadFromTheRightBeginThereAsInTheDialog) {
    Note note{.text = L"\u05E9\u05DC\u05D5\u05DD abc\nabc \u05E9\u05DC\u05D5\u05DD\n1 \u05E9\n1"};
    for (const int alignment : {kAlignLeft, kAlignRight, kAlignCentre}) {
        note.look.alignment = alignment;
        std::string ends;
        for (const PaintedLine& line : PaintedLines(note, LayoutNote(4500, 3000), 1 / 15.0, 1 / 15.0))
            ends += line.place.x == 16 ? 'l' : line.place.GetRight() + 1 == 300 - 16 ? 'r' : 'c';
        EXPECT_EQ(ends, alignment == kAlignLeft ? "rlrl" : alignment == kAlignRight ? "lrlr" : "cccc");
    }
}

TEST(PropertiesLook, CaptionsStandInTheStyleThatTheyName) {
    auto* dialog = new frmProperties(L"Neue Notiz");
    for (std::size_t i = 0; i < dialog->chkForm.size(); ++i) {
        GtkWidget* const label = gtk_bin_get_child(GTK_BIN(dialog->chkForm[i]->GetHandle()));
        g_autofree char* attributes = pango_attr_list_to_string(gtk_label_get_attributes(GTK_LABEL(label)));
        const std::string drawn = attributes;
        NoteLook look;
        look.*kNoteStyles[i].flag = true;
        EXPECT_EQ(drawn.find("Bold") != drawn.npos, look.bold) << drawn;
        EXPECT_EQ(drawn.find("Italic") != drawn.npos, look.italic) << drawn;
        EXPECT_EQ(drawn.find("underline") != drawn.npos, look.underlined) << drawn;
    }
    dialog->Destroy();
}
