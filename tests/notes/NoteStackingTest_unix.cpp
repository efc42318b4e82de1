// What the window manager was told of a note that is hidden and shown again.
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include <set>
#include <string>

#include "notes/frmNote.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Events.h"

namespace {

using States = std::set<std::string>;

// The states that the window manager keeps with the window.
States StatesOf(frmNote& note) {
    GdkWindow* window = gtk_widget_get_window(note.GetHandle());
    GdkAtom type;
    gint format = 0, bytes = 0;
    guchar* data = nullptr;
    States states;
    if (!window || !gdk_property_get(window, gdk_atom_intern_static_string("_NET_WM_STATE"), GDK_NONE, 0, 256,
                                     FALSE, &type, &format, &bytes, &data)) {
        return states;
    }
    const auto* atoms = reinterpret_cast<GdkAtom*>(data);
    for (std::size_t i = 0; i < static_cast<std::size_t>(bytes) / sizeof(GdkAtom); ++i) {
        gchar* name = gdk_atom_name(atoms[i]);
        states.insert(name);
        g_free(name);
    }
    g_free(data);
    return states;
}

}  // namespace

TEST(NoteStacking, SurvivesHidingAndShowing) {
    const States beside{"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"};
    States above = beside;
    above.insert("_NET_WM_STATE_ABOVE");
    for (const bool topmost : {false, true}) {
        SCOPED_TRACE(topmost);
        const States& expected = topmost ? above : beside;
        NoteRecorder recorder;
        const NotePtr note(new frmNote(recorder));
        note->HiddenForeground(topmost);
        note->ShowStacked();
        EXPECT_TRUE(RunUntil([&] { return StatesOf(*note) == expected; }))
            << testing::PrintToString(StatesOf(*note));
        RunEvents(std::chrono::milliseconds(200));
        note->Minimized(true);
        ASSERT_TRUE(RunUntil([&] { return StatesOf(*note).empty(); }));
        note->Minimized(false);
        RunEvents(std::chrono::milliseconds(200));
        EXPECT_TRUE(RunUntil([&] { return StatesOf(*note) == expected; }))
            << testing::PrintToString(StatesOf(*note));
        // At once, before the window manager has dealt with the one and the other.
        note->Minimized(true);
        note->Minimized(false);
        RunEvents(std::chrono::milliseconds(300));
        EXPECT_TRUE(RunUntil([&] { return StatesOf(*note) == expected; }))
            << testing::PrintToString(StatesOf(*note));
    }
}
