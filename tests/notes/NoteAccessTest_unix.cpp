// What screen readers are told of a note.
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "base/Text.h"
#include "notes/frmNote.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Events.h"

TEST(NoteAccess, TellsNameRoleAndTheWholeText) {
    NoteRecorder recorder;
    const NotePtr note(new frmNote(recorder));
    AtkObject* const window = gtk_widget_get_accessible(note->GetHandle());
    const std::wstring longText = L"Käse\r\n" + std::wstring(3000, L'x');
    note->CreationTime(L"21.11.2026, 09:05:00");
    const struct {
        std::wstring text;
        bool foreground;
        std::wstring name, description;
    } rows[] = {
        {L"Milch\r\nund Brot", false, L"Notiz: Milch und Brot", L"21.11.2026, 09:05:00"},
        {longText, true, L"Notiz: Käse " + std::wstring(50, L'x') + L" ...",
         L"21.11.2026, 09:05:00\r\nImmer im Vordergrund"},
    };
    for (const auto& row : rows) {
        note->Text(row.text);
        note->Foreground(row.foreground);
        EXPECT_EQ(FromUtf8(atk_object_get_name(window)), row.name);
        EXPECT_EQ(FromUtf8(atk_object_get_description(window)), row.description);
        EXPECT_EQ(atk_object_get_role(window), ATK_ROLE_FRAME);
    }

    // Inside is the part that has the keyboard.
    AtkObject* const part = gtk_widget_get_accessible(note->m_wxwindow);
    const std::pair<const wchar_t*, AtkRole> parts[] = {
        {longText.c_str(), ATK_ROLE_STATIC},
        {L"Im Vordergrund ein/aus, aktiviert", ATK_ROLE_CHECK_BOX},
        {L"Minimieren", ATK_ROLE_PUSH_BUTTON},
        {longText.c_str(), ATK_ROLE_STATIC},
    };
    for (const auto& [name, role] : parts) {
        EXPECT_EQ(FromUtf8(atk_object_get_name(part)), name);
        EXPECT_EQ(atk_object_get_role(part), role);
        wxKeyEvent tab(wxEVT_CHAR_HOOK);
        tab.m_keyCode = WXK_TAB;
        tab.SetEventObject(note.get());
        note->ProcessWindowEvent(tab);
    }
    note->Foreground(false);
    EXPECT_EQ(FromUtf8(atk_object_get_name(part)), L"Im Vordergrund ein/aus, nicht aktiviert");
}

TEST(NoteAccess, LetsTheTextBeReadByLineAndWordWhereItStands) {
    NoteRecorder recorder;
    NotePtr note(new frmNote(recorder));
    note->Text(L"Käse und Brot\r\nüber 3 Eier");
    note->FontNoteBold(true);
    note->SizeTo(3000, 3000);
    AtkText* const text = ATK_TEXT(gtk_widget_get_accessible(note->m_wxwindow));
    EXPECT_EQ(atk_text_get_character_count(text), 25);
    const struct {
        AtkTextGranularity granularity;
        int offset;
        const char* piece;
        int start, end;
    } pieces[] = {
        {ATK_TEXT_GRANULARITY_CHAR, 1, "ä", 1, 2},
        {ATK_TEXT_GRANULARITY_WORD, 6, "und ", 5, 9},
        {ATK_TEXT_GRANULARITY_LINE, 3, "Käse und Brot\n", 0, 14},
        {ATK_TEXT_GRANULARITY_LINE, 24, "über 3 Eier", 14, 25},
        {ATK_TEXT_GRANULARITY_PARAGRAPH, 13, "Käse und Brot\n", 0, 14},
        {ATK_TEXT_GRANULARITY_LINE, 25, "", 0, 0},
    };
    const auto expect = [](char* piece, const char* wanted, int start, int wantedStart, int end,
                           int wantedEnd) {
        EXPECT_STREQ(piece, wanted);
        EXPECT_EQ(start, wantedStart);
        EXPECT_EQ(end, wantedEnd);
        g_free(piece);
    };
    int start = 0, end = 0;
    for (const auto& row : pieces) {
        SCOPED_TRACE(row.piece);
        char* const piece = atk_text_get_string_at_offset(text, row.offset, row.granularity, &start, &end);
        expect(piece, row.piece, start, row.start, end, row.end);
    }
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    char* const after = atk_text_get_text_after_offset(text, 0, ATK_TEXT_BOUNDARY_WORD_END, &start, &end);
    expect(after, " und", start, 4, end, 8);
    char* const before =
        atk_text_get_text_before_offset(text, 20, ATK_TEXT_BOUNDARY_LINE_START, &start, &end);
    expect(before, "Käse und Brot\n", start, 0, end, 14);
    G_GNUC_END_IGNORE_DEPRECATIONS

    // Letters stand one behind the other, lines one below the other, and what stands there is found there.
    const auto place = [&](int offset) {
        wxRect rect;
        atk_text_get_character_extents(text, offset, &rect.x, &rect.y, &rect.width, &rect.height,
                                       ATK_XY_WINDOW);
        return rect;
    };
    const wxRect first = place(0), second = place(1), below = place(14);
    EXPECT_EQ(second.x, first.GetRight() + 1);
    EXPECT_EQ(below.x, first.x);
    EXPECT_EQ(below.y, first.GetBottom() + 1);
    EXPECT_EQ(atk_text_get_offset_at_point(text, below.x + 1, below.y + 1, ATK_XY_WINDOW), 14);
    EXPECT_EQ(atk_text_get_offset_at_point(text, 0, 0, ATK_XY_WINDOW), -1);
    note->Text(L"Ω");
    g_autofree char* whole = atk_text_get_text(text, 0, -1);
    EXPECT_STREQ(whole, "Ω");

    // A reader may hold on to what it has asked, and gets no answer when the note has gone.
    g_object_ref(text);
    note.reset();
    EXPECT_TRUE(RunUntil([&] { return atk_text_get_character_count(text) == 0; }));
    EXPECT_STREQ(atk_object_get_name(ATK_OBJECT(text)), "");
    g_object_unref(text);
}
