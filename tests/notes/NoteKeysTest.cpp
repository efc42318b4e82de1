#include <gtest/gtest.h>

#include "dialogs/Clipboard.h"
#include "notes/NoteKeys.h"
#include "notes/NoteWindow.h"
#include "notes/frmNote.h"
#include "tests/notes/NoteRecorder.h"
#include "tests/support/Controls.h"
#include "tests/support/Events.h"

namespace {

using Calls = std::vector<std::wstring>;

class NoteKeysTest : public testing::Test {
  protected:
    NoteKeysTest() : note(new frmNote(recorder)) {
        note->Place({3000, 3000, 3000, 2400});
        note->ShowStacked();
        // It has come to its place.
        RunUntil([this] { return RectOnScreen(*note) == wxRect(200, 200, 200, 160); },
                 std::chrono::seconds(10));
        note->TakeFocus(false);
        RunUntil([this] { return note->IsActive(); });
        Take(recorder);
    }

    ~NoteKeysTest() override {
        note.reset();
        RunPosted();  // what becomes of its keyboard is heard by this recorder
    }

    // As a key that is held down gives it, without its release.
    void Held(int code, int modifiers = wxMOD_NONE) {
        wxKeyEvent event(wxEVT_CHAR_HOOK);
        event.m_keyCode = code;
        event.SetShiftDown(modifiers == wxMOD_SHIFT);
        note->ProcessWindowEvent(event);
    }
    Calls CallsAfter(int code, int modifiers = wxMOD_NONE) {
        TypeKey(code, modifiers);
        return Take(recorder);
    }

    // In pixels.
    std::vector<double> Place() const {
        return {note->Left() / 15, note->Top() / 15, note->Width() / 15, note->Height() / 15};
    }

    NoteRecorder recorder;
    NotePtr note;
};

}  // namespace

TEST_F(NoteKeysTest, AskForWhatTheMouseAsksFor) {
    const struct {
        int code, modifiers;
        const wchar_t* call;
    } rows[] = {
        {WXK_F10, wxMOD_SHIFT, L"menu at the note"},
        {WXK_RETURN, wxMOD_NONE, L"edit"},
        {WXK_TAB, wxMOD_CONTROL, L"next"},
        {WXK_TAB, wxMOD_CONTROL | wxMOD_SHIFT, L"previous"},
        {WXK_F6, wxMOD_NONE, L"next"},
        {WXK_F6, wxMOD_SHIFT, L"previous"},
        {'F', wxMOD_CONTROL, L"find"},
        {'Z', wxMOD_CONTROL, L"bring back"},
        {'V', wxMOD_CONTROL, L"text: von anderswo"},
    };
    ASSERT_TRUE(CopyText(L"von anderswo"));
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.code << " with " << row.modifiers);
        EXPECT_EQ(CallsAfter(row.code, row.modifiers), Calls{row.call});
    }
    EXPECT_EQ(note->Focus(), NotePart::Body);
    note->Text(L"Käse");
    EXPECT_EQ(CallsAfter('C', wxMOD_CONTROL), Calls{});
    EXPECT_EQ(ClipboardText(), L"Käse");
    EXPECT_EQ(CallsAfter(WXK_SPACE), Calls{}) << "nothing to press";
    EXPECT_EQ(CallsAfter('V'), Calls{});
    // These wxUIActionSimulator cannot press everywhere.
    EXPECT_EQ(CommandOfKey(WXK_WINDOWS_MENU, wxMOD_NONE), NoteCommand::Menu);
    EXPECT_EQ(CommandOfKey(WXK_NUMPAD_ENTER, wxMOD_NONE), NoteCommand::Enter);
}

TEST_F(NoteKeysTest, TabReachesTheControlsAndSpaceAndEnterPressThem) {
    TypeKey(WXK_TAB);
    EXPECT_EQ(note->Focus(), NotePart::chkForeground);
    EXPECT_EQ(CallsAfter(WXK_SPACE), (Calls{L"save", L"apply"}));
    EXPECT_TRUE(note->Foreground());
    EXPECT_EQ(CallsAfter(WXK_RETURN), (Calls{L"save", L"apply"}));
    EXPECT_FALSE(note->Foreground());
    EXPECT_EQ(CallsAfter(WXK_F10, wxMOD_SHIFT), Calls{L"menu at the note"});
    TypeKey(WXK_TAB);
    TypeKey(WXK_TAB);
    EXPECT_EQ(note->Focus(), NotePart::Body);
    TypeKey(WXK_TAB, wxMOD_SHIFT);
    EXPECT_EQ(note->Focus(), NotePart::cmdMinimize);
    const NotePtr other(new frmNote(recorder));
    other->ShowStacked();
    other->TakeFocus(false);
    EXPECT_TRUE(RunUntil([this] { return note->Focus() == NotePart::Body; })) << "its mark goes";
    note->TakeFocus(true);
    RunUntil([this] { return note->IsActive(); });
    TypeKey(WXK_TAB, wxMOD_SHIFT);
    Take(recorder);
    EXPECT_EQ(CallsAfter(WXK_SPACE), Calls{L"pass on"});
    EXPECT_TRUE(note->Minimized());
}

TEST_F(NoteKeysTest, ArrowsMoveAndSize) {
    const struct {
        int code, modifiers;
        std::vector<double> place;
    } rows[] = {
        {WXK_RIGHT, wxMOD_NONE, {210, 200, 200, 160}},  {WXK_DOWN, wxMOD_NONE, {210, 210, 200, 160}},
        {WXK_LEFT, wxMOD_NONE, {200, 210, 200, 160}},   {WXK_UP, wxMOD_NONE, {200, 200, 200, 160}},
        {WXK_RIGHT, wxMOD_SHIFT, {200, 200, 210, 160}}, {WXK_DOWN, wxMOD_SHIFT, {200, 200, 210, 170}},
        {WXK_LEFT, wxMOD_SHIFT, {200, 200, 200, 170}},  {WXK_UP, wxMOD_SHIFT, {200, 200, 200, 160}},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(CallsAfter(row.code, row.modifiers), Calls{L"save"});
        EXPECT_EQ(Place(), row.place);
    }
}

TEST_F(NoteKeysTest, AHeldKeyIsSavedOnce) {
    Held(WXK_RIGHT);
    Held(WXK_RIGHT);
    EXPECT_EQ(Take(recorder), Calls{});
    EXPECT_EQ(CallsAfter(WXK_RIGHT), Calls{L"save"});
    EXPECT_EQ(CallsAfter(WXK_F12), Calls{});
    EXPECT_EQ(Place(), (std::vector<double>{230, 200, 200, 160}));
}

TEST_F(NoteKeysTest, ArrowsBeginWhereTheWindowManagerPutTheNote) {
    const wxRect elsewhere(333, 222, 200, 160);
    note->Move(elsewhere.GetPosition());  // past the note
    ASSERT_TRUE(RunUntil([&] { return RectOnScreen(*note) == elsewhere; }));
    EXPECT_EQ(note->WindowRect(), elsewhere);
    Held(WXK_RIGHT);
    EXPECT_EQ(Place(), (std::vector<double>{343, 222, 200, 160}));
}

TEST_F(NoteKeysTest, ArrowsNeitherLoseANoteNorMakeItTooSmall) {
    for (int i = 0; i < 400; ++i) Held(WXK_LEFT);
    EXPECT_GT(note->Left() + note->Width(), 0);
    for (int i = 0; i < 400; ++i) Held(WXK_UP, wxMOD_SHIFT);
    EXPECT_EQ(note->Height(), 750);
}
