// What screen readers are told of a note.
#include <gtest/gtest.h>
#include <gtk/gtk.h>

#include "base/Text.h"
#include "notes/frmNote.h"
#include "tests/notes/NoteRecorder.h"

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
        {L"Milch\r\nund Brot", false, L"Notiz: Milch und Brot", L"Milch\r\nund Brot\r\n21.11.2026, 09:05:00"},
        {longText, true, L"Notiz: Käse " + std::wstring(50, L'x') + L" ...",
         longText + L"\r\n21.11.2026, 09:05:00\r\nImmer im Vordergrund"},
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
    const struct {
        const wchar_t* name;
        AtkRole role;
    } parts[] = {
        {longText.c_str(), ATK_ROLE_LABEL},
        {L"Im Vordergrund ein/aus, aktiviert", ATK_ROLE_CHECK_BOX},
        {L"Minimieren", ATK_ROLE_PUSH_BUTTON},
        {longText.c_str(), ATK_ROLE_LABEL},
    };
    for (const auto& row : parts) {
        EXPECT_EQ(FromUtf8(atk_object_get_name(part)), row.name);
        EXPECT_EQ(atk_object_get_role(part), row.role);
        wxKeyEvent tab(wxEVT_CHAR_HOOK);
        tab.m_keyCode = WXK_TAB;
        tab.SetEventObject(note.get());
        note->ProcessWindowEvent(tab);
    }
    note->Foreground(false);
    EXPECT_EQ(FromUtf8(atk_object_get_name(part)), L"Im Vordergrund ein/aus, nicht aktiviert");
}
